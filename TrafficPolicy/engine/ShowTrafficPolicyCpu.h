// `show traffic-policy cpu`: policies on control-plane traffic, per VRF.

#pragma once

#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"

namespace TrafficPolicyCli {

class PolicyStateCpu; // the cached record of this side

class ShowTrafficPolicyCpu : public ShowTrafficPolicyBase {
   VORN_ENTITY( ShowTrafficPolicyCpu, ShowTrafficPolicyBase )

   VORN_INPUT( Vorn::Ptr< PolicyMap::VrfConfig const >, vrfConfig )
   VORN_INPUT( Vorn::Ptr< Ip::AllVrfConfig const >, allVrfConfig )
   VORN_INPUT( Vorn::Ptr< L3::Intf::StatusDir const >, l3IntfStatusDir )

   ShowTrafficPolicyCpu( Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
                         Vorn::Ptr< TrafficPolicy::Status const > const & status,
                         Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                         Vorn::String policyName, bool summary, bool errors, bool detail,
                         bool counters, bool countersPerInterface,
                         Vorn::Ptr< PolicyMap::VrfConfig const > const & vrfConfig,
                         Vorn::Ptr< Ip::AllVrfConfig const > const & allVrfConfig,
                         Vorn::Ptr< L3::Intf::StatusDir const > const & l3IntfStatusDir );

   void renderTrafficPolicy( unsigned fd, unsigned format, unsigned revision ) override;
   void cachePoliciesState() override;
   void cacheIntfStatus(
      Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus ) override;
   void cacheInstalledState( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
                             PolicyMap::ClassMapMatchOption matchOption ) override;
   void cacheInstallError( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
                           PolicyMap::ClassMapMatchOption matchOption ) override;
   Vorn::Ptr< PolicyState > getOrCreatePolicyState( Vorn::String policyName ) override;

private:
   PolicyStateCpu & cpuState( Vorn::String const & policyName );
};

Vorn::Ptr< ShowTrafficPolicyCpu >
showTrafficPolicyCpuFactory( Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
                             Vorn::Ptr< TrafficPolicy::Status const > const & status,
                             Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                             Vorn::String policyName, bool summary, bool errors, bool detail,
                             bool counters, bool countersPerInterface,
                             Vorn::Ptr< PolicyMap::VrfConfig const > const & vrfConfig,
                             Vorn::Ptr< Ip::AllVrfConfig const > const & allVrfConfig,
                             Vorn::Ptr< L3::Intf::StatusDir const > const & l3IntfStatusDir );

} // namespace TrafficPolicyCli
