// `show traffic-policy cpu`: policies on control-plane traffic, per VRF.

#pragma once

#include "TrafficPolicy/engine/ShowTrafficPolicySide.h"
#include "TrafficPolicy/platform/Export.h"

namespace TrafficPolicyCli {

struct TRAFFIC_POLICY_API CpuBinding;
class PolicyStateCpu; // the cached record of this side

class TRAFFIC_POLICY_API ShowTrafficPolicyCpu
   : public ShowTrafficPolicySide< ShowTrafficPolicyCpu, CpuBinding > {
   VORN_ENTITY( ShowTrafficPolicyCpu, ShowTrafficPolicyBase )

   VORN_INPUT( Vorn::Ptr< PolicyMap::VrfConfig const >, vrfConfig ) // not null
   VORN_INPUT( Vorn::Ptr< Ip::AllVrfConfig const >, allVrfConfig )  // may be null: not read
   // Not null when a policy's status has interfaces.
   VORN_INPUT( Vorn::Ptr< L3::Intf::StatusDir const >, l3IntfStatusDir )

   VORN_CONSTRUCTOR( ShowTrafficPolicyCpu )

   void renderTrafficPolicy( unsigned fd, unsigned format, unsigned revision ) override;

private:
   friend ShowTrafficPolicySide;

   Vorn::HashMap< L3::VrfName, Vorn::String > const & configuredPolicies() const;
   void intfStatusIs( PolicyStateCpu & state, Pelx::IntfId const & intf,
                      Vorn::Ptr< PolicyMap::IntfStatus const > const & status ) const;
};

TRAFFIC_POLICY_API Vorn::Ptr< ShowTrafficPolicyCpu >
showTrafficPolicyCpuFactory( Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
                             Vorn::Ptr< TrafficPolicy::Status const > const & status,
                             Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                             Vorn::String policyName, bool summary, bool errors, bool detail,
                             bool counters, bool countersPerInterface,
                             Vorn::Ptr< PolicyMap::VrfConfig const > const & vrfConfig,
                             Vorn::Ptr< Ip::AllVrfConfig const > const & allVrfConfig,
                             Vorn::Ptr< L3::Intf::StatusDir const > const & l3IntfStatusDir );

} // namespace TrafficPolicyCli
