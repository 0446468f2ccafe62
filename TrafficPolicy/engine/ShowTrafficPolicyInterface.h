// `show traffic-policy interface`: policies on interfaces.

#pragma once

#include "TrafficPolicy/engine/ShowTrafficPolicySide.h"
#include "TrafficPolicy/platform/Export.h"

namespace TrafficPolicyCli {

struct TRAFFIC_POLICY_API InterfaceBinding;
class PolicyStateInterface; // the cached record of this side

class TRAFFIC_POLICY_API ShowTrafficPolicyInterface
   : public ShowTrafficPolicySide< ShowTrafficPolicyInterface, InterfaceBinding > {
   VORN_ENTITY( ShowTrafficPolicyInterface, ShowTrafficPolicyBase )

   VORN_INPUT( Vorn::Ptr< PolicyMap::IntfConfig const >, intfConfig ) // not null
   // May be null: then the counter view has no line for the granularity.
   VORN_INPUT( Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus const >, policyParamStatus )

   VORN_CONSTRUCTOR( ShowTrafficPolicyInterface )

   void renderTrafficPolicy( unsigned fd, unsigned format, unsigned revision ) override;
   void renderCountPerInterface( wendo::RendererV2 * renderer ) override;

private:
   friend ShowTrafficPolicySide;

   Vorn::HashMap< Pelx::IntfId, Vorn::String > const & configuredPolicies() const;
   void intfStatusIs( PolicyStateInterface & state, Pelx::IntfId const & intf,
                      Vorn::Ptr< PolicyMap::IntfStatus const > const & status ) const;
};

TRAFFIC_POLICY_API Vorn::Ptr< ShowTrafficPolicyInterface > showTrafficPolicyInterfaceFactory(
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
   Vorn::Ptr< TrafficPolicy::Status const > const & status,
   Vorn::Ptr< TrafficPolicy::Counter const > const & counter, Vorn::String policyName, bool summary,
   bool errors, bool detail, bool counters, bool countersPerInterface,
   Vorn::Ptr< PolicyMap::IntfConfig const > const & intfConfig,
   Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus const > const & policyParamStatus );

} // namespace TrafficPolicyCli
