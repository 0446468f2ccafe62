#include "TrafficPolicy/engine/ShowTrafficPolicyCpu.h"

#include "TrafficPolicy/engine/SideCaching.h"
#include "TrafficPolicy/platform/vorn/Describe.h"
#include "TrafficPolicy/views/PolicyView.h"

namespace TrafficPolicyCli {

VORN_TYPE( ShowTrafficPolicyCpu )

template class ShowTrafficPolicySide< ShowTrafficPolicyCpu, CpuBinding >;

Vorn::HashMap< L3::VrfName, Vorn::String > const &
ShowTrafficPolicyCpu::configuredPolicies() const {
   VORN_ASSERT( vrfConfig() );
   return vrfConfig()->trafficPolicies();
}

// Interfaces are grouped by VRF. One that is no layer-3 interface belongs to none.
void ShowTrafficPolicyCpu::intfStatusIs(
   PolicyStateCpu & state, Pelx::IntfId const & intf,
   Vorn::Ptr< PolicyMap::IntfStatus const > const & status ) const {
   VORN_ASSERT( l3IntfStatusDir() );
   auto const * l3Status = l3IntfStatusDir()->intfStatus( intf );
   if ( l3Status && *l3Status ) {
      state.vrfIntfStatusIs( ( *l3Status )->vrf() )->intfStatusIs( status );
   }
}

void ShowTrafficPolicyCpu::renderTrafficPolicy( unsigned fd, unsigned format, unsigned ) {
   static L3::VrfName const all( "all" );
   renderPolicies< CpuBinding >( fd, format, { policyState(), policyName() },
                                 { .errors = errors(),
                                   .countersPerInterface = countersPerInterface(),
                                   .allVrfs = configuredPolicies().contains( all ) } );
}

Vorn::Ptr< ShowTrafficPolicyCpu >
showTrafficPolicyCpuFactory( Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
                             Vorn::Ptr< TrafficPolicy::Status const > const & status,
                             Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                             Vorn::String policyName, bool summary, bool errors, bool detail,
                             bool counters, bool countersPerInterface,
                             Vorn::Ptr< PolicyMap::VrfConfig const > const & vrfConfig,
                             Vorn::Ptr< Ip::AllVrfConfig const > const & allVrfConfig,
                             Vorn::Ptr< L3::Intf::StatusDir const > const & l3IntfStatusDir ) {
   return Vorn::create< ShowTrafficPolicyCpu >( config, status, counter, policyName, summary,
                                                errors, detail, counters, countersPerInterface,
                                                vrfConfig, allVrfConfig, l3IntfStatusDir );
}

} // namespace TrafficPolicyCli
