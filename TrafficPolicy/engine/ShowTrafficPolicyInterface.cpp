#include "TrafficPolicy/engine/ShowTrafficPolicyInterface.h"

#include "TrafficPolicy/counters/CounterView.h"
#include "TrafficPolicy/engine/InstallationCaching.h"
#include "TrafficPolicy/platform/vorn/Describe.h"
#include "TrafficPolicy/views/PolicyView.h"

#include <utility>

namespace TrafficPolicyCli {

VORN_TYPE( ShowTrafficPolicyInterface )

ShowTrafficPolicyInterface::ShowTrafficPolicyInterface(
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
   Vorn::Ptr< TrafficPolicy::Status const > const & status,
   Vorn::Ptr< TrafficPolicy::Counter const > const & counter, Vorn::String policyName, bool summary,
   bool errors, bool detail, bool counters, bool countersPerInterface,
   Vorn::Ptr< PolicyMap::IntfConfig const > const & intfConfig,
   Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus const > const & policyParamStatus )
   : ShowTrafficPolicyBase( config, status, counter, std::move( policyName ), summary, errors,
                            detail, counters, countersPerInterface )
   , intfConfig_( intfConfig )
   , policyParamStatus_( policyParamStatus ) {}

Vorn::Ptr< PolicyState >
ShowTrafficPolicyInterface::getOrCreatePolicyState( Vorn::String policyName ) {
   return policyStateBy(
      []( Vorn::String name ) -> Vorn::Ptr< PolicyState > {
         return policyStateInterfaceFactory( std::move( name ) );
      },
      policyName );
}

PolicyStateInterface &
ShowTrafficPolicyInterface::interfaceState( Vorn::String const & policyName ) {
   return static_cast< PolicyStateInterface & >( *getOrCreatePolicyState( policyName ) );
}

void ShowTrafficPolicyInterface::cachePoliciesState() {
   for ( auto const & [intf, policyName] : intfConfig()->intf() ) {
      interfaceState( policyName ).configuredIntfIs( intf.string(), true );
   }
   ShowTrafficPolicyBase::cachePoliciesState();
}

// Every interface is a binding of its own: no layer-3 status is asked.
void ShowTrafficPolicyInterface::cacheIntfStatus(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus ) {
   trace.write( 8, "virtual void TrafficPolicyCli::ShowTrafficPolicyInterface::cacheIntfStatus("
                   "const PtrConst&)" );
   PolicyStateInterface & state = interfaceState( policyMapStatus->name() );
   for ( auto const & [intf, intfStatus] : policyMapStatus->intfStatus() ) {
      auto const set = interfaceStatusFactory();
      set->intfStatusIs( intfStatus );
      state.interfaceStatusIs( intf.string(), set );
   }
}

void ShowTrafficPolicyInterface::cacheInstalledState(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
   PolicyMap::ClassMapMatchOption matchOption ) {
   trace.write( 8,
                "virtual void TrafficPolicyCli::ShowTrafficPolicyInterface::cacheInstalledState("
                "const PtrConst&, PolicyMap::ClassMapMatchOption) matchOption ",
                matchOption );
   TrafficPolicyCli::cacheInstalledState< InterfaceBinding >(
      interfaceState( policyMapStatus->name() ), matchOption );
}

void ShowTrafficPolicyInterface::cacheInstallError(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
   PolicyMap::ClassMapMatchOption matchOption ) {
   trace.write( 8,
                "virtual void TrafficPolicyCli::ShowTrafficPolicyInterface::cacheInstallError("
                "const PtrConst&, PolicyMap::ClassMapMatchOption), option:",
                matchOption );
   TrafficPolicyCli::cacheInstallError< InterfaceBinding >(
      interfaceState( policyMapStatus->name() ), matchOption );
}

void ShowTrafficPolicyInterface::renderTrafficPolicy( unsigned fd, unsigned format, unsigned ) {
   renderPolicies< InterfaceBinding >(
      fd, format, { policyState(), policyName() },
      { .errors = errors(), .countersPerInterface = countersPerInterface(), .allVrfs = false } );
}

void ShowTrafficPolicyInterface::renderCountPerInterface( wendo::RendererV2 * renderer ) {
   if ( policyParamStatus() ) {
      renderCounterGranularity( *renderer, policyParamStatus()->ingressCounterGranularity() );
   }
}

Vorn::Ptr< ShowTrafficPolicyInterface > showTrafficPolicyInterfaceFactory(
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
   Vorn::Ptr< TrafficPolicy::Status const > const & status,
   Vorn::Ptr< TrafficPolicy::Counter const > const & counter, Vorn::String policyName, bool summary,
   bool errors, bool detail, bool counters, bool countersPerInterface,
   Vorn::Ptr< PolicyMap::IntfConfig const > const & intfConfig,
   Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus const > const & policyParamStatus ) {
   return Vorn::create< ShowTrafficPolicyInterface >(
      config, status, counter, policyName, summary, errors, detail, counters, countersPerInterface,
      intfConfig, policyParamStatus );
}

} // namespace TrafficPolicyCli
