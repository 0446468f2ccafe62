#include "TrafficPolicy/engine/ShowTrafficPolicyInterface.h"

#include "TrafficPolicy/counters/CounterView.h"
#include "TrafficPolicy/engine/SideCaching.h"
#include "TrafficPolicy/platform/vorn/Describe.h"
#include "TrafficPolicy/views/PolicyView.h"

namespace TrafficPolicyCli {

VORN_TYPE( ShowTrafficPolicyInterface )

template class ShowTrafficPolicySide< ShowTrafficPolicyInterface, InterfaceBinding >;

Vorn::HashMap< Pelx::IntfId, Vorn::String > const &
ShowTrafficPolicyInterface::configuredPolicies() const {
   VORN_ASSERT( intfConfig() );
   return intfConfig()->intf();
}

// Every interface is a binding of its own: its layer-3 status is not read.
void ShowTrafficPolicyInterface::intfStatusIs(
   PolicyStateInterface & state, Pelx::IntfId const & intf,
   Vorn::Ptr< PolicyMap::IntfStatus const > const & status ) const {
   auto const set = interfaceStatusFactory();
   set->intfStatusIs( status );
   state.interfaceStatusIs( intf.string(), set );
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
