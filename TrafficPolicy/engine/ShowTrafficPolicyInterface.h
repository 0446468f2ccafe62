// `show traffic-policy interface`: policies on interfaces.

#pragma once

#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"

namespace TrafficPolicyCli {

class PolicyStateInterface; // the cached record of this side

class ShowTrafficPolicyInterface : public ShowTrafficPolicyBase {
   VORN_ENTITY( ShowTrafficPolicyInterface, ShowTrafficPolicyBase )

   VORN_INPUT( Vorn::Ptr< PolicyMap::IntfConfig const >, intfConfig )
   // May be null: then nothing is said of the counters' granularity.
   VORN_INPUT( Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus const >, policyParamStatus )

   ShowTrafficPolicyInterface(
      Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
      Vorn::Ptr< TrafficPolicy::Status const > const & status,
      Vorn::Ptr< TrafficPolicy::Counter const > const & counter, Vorn::String policyName,
      bool summary, bool errors, bool detail, bool counters, bool countersPerInterface,
      Vorn::Ptr< PolicyMap::IntfConfig const > const & intfConfig,
      Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus const > const & policyParamStatus );

   void renderTrafficPolicy( unsigned fd, unsigned format, unsigned revision ) override;
   void renderCountPerInterface( wendo::RendererV2 * renderer ) override;
   void cachePoliciesState() override;
   void cacheIntfStatus(
      Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus ) override;
   void cacheInstalledState( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
                             PolicyMap::ClassMapMatchOption matchOption ) override;
   void cacheInstallError( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
                           PolicyMap::ClassMapMatchOption matchOption ) override;
   Vorn::Ptr< PolicyState > getOrCreatePolicyState( Vorn::String policyName ) override;

private:
   PolicyStateInterface & interfaceState( Vorn::String const & policyName );
};

Vorn::Ptr< ShowTrafficPolicyInterface > showTrafficPolicyInterfaceFactory(
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
   Vorn::Ptr< TrafficPolicy::Status const > const & status,
   Vorn::Ptr< TrafficPolicy::Counter const > const & counter, Vorn::String policyName, bool summary,
   bool errors, bool detail, bool counters, bool countersPerInterface,
   Vorn::Ptr< PolicyMap::IntfConfig const > const & intfConfig,
   Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus const > const & policyParamStatus );

} // namespace TrafficPolicyCli
