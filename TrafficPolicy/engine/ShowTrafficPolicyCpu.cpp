#include "TrafficPolicy/engine/ShowTrafficPolicyCpu.h"

#include "TrafficPolicy/engine/InstallationCaching.h"
#include "TrafficPolicy/platform/vorn/Describe.h"
#include "TrafficPolicy/views/PolicyView.h"

#include <utility>

namespace TrafficPolicyCli {

VORN_TYPE( ShowTrafficPolicyCpu )

ShowTrafficPolicyCpu::ShowTrafficPolicyCpu(
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
   Vorn::Ptr< TrafficPolicy::Status const > const & status,
   Vorn::Ptr< TrafficPolicy::Counter const > const & counter, Vorn::String policyName, bool summary,
   bool errors, bool detail, bool counters, bool countersPerInterface,
   Vorn::Ptr< PolicyMap::VrfConfig const > const & vrfConfig,
   Vorn::Ptr< Ip::AllVrfConfig const > const & allVrfConfig,
   Vorn::Ptr< L3::Intf::StatusDir const > const & l3IntfStatusDir )
   : ShowTrafficPolicyBase( config, status, counter, std::move( policyName ), summary, errors,
                            detail, counters, countersPerInterface )
   , vrfConfig_( vrfConfig )
   , allVrfConfig_( allVrfConfig )
   , l3IntfStatusDir_( l3IntfStatusDir ) {}

Vorn::Ptr< PolicyState > ShowTrafficPolicyCpu::getOrCreatePolicyState( Vorn::String policyName ) {
   return policyStateBy(
      []( Vorn::String name ) -> Vorn::Ptr< PolicyState > {
         return policyStateCpuFactory( std::move( name ) );
      },
      policyName );
}

PolicyStateCpu & ShowTrafficPolicyCpu::cpuState( Vorn::String const & policyName ) {
   return static_cast< PolicyStateCpu & >( *getOrCreatePolicyState( policyName ) );
}

void ShowTrafficPolicyCpu::cachePoliciesState() {
   for ( auto const & [vrf, policyName] : vrfConfig()->trafficPolicies() ) {
      cpuState( policyName ).configuredVrfIs( vrf, true );
   }
   ShowTrafficPolicyBase::cachePoliciesState();
}

// Groups the policy's interfaces by VRF. One that is no layer-3 interface counts for none.
void ShowTrafficPolicyCpu::cacheIntfStatus(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus ) {
   trace.write( 8, "virtual void TrafficPolicyCli::ShowTrafficPolicyCpu::cacheIntfStatus("
                   "const PtrConst&)" );
   PolicyStateCpu & state = cpuState( policyMapStatus->name() );
   for ( auto const & [intf, intfStatus] : policyMapStatus->intfStatus() ) {
      auto const * l3Status = l3IntfStatusDir()->intfStatus( intf );
      if ( l3Status && *l3Status ) {
         state.vrfIntfStatusIs( ( *l3Status )->vrf() )->intfStatusIs( intfStatus );
      }
   }
}

void ShowTrafficPolicyCpu::cacheInstalledState(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
   PolicyMap::ClassMapMatchOption matchOption ) {
   trace.write( 8,
                "virtual void TrafficPolicyCli::ShowTrafficPolicyCpu::cacheInstalledState("
                "const PtrConst&, PolicyMap::ClassMapMatchOption) matchOption ",
                matchOption );
   TrafficPolicyCli::cacheInstalledState< CpuBinding >( cpuState( policyMapStatus->name() ),
                                                        matchOption );
}

void ShowTrafficPolicyCpu::cacheInstallError(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
   PolicyMap::ClassMapMatchOption matchOption ) {
   trace.write( 8,
                "virtual void TrafficPolicyCli::ShowTrafficPolicyCpu::cacheInstallError("
                "const PtrConst&, PolicyMap::ClassMapMatchOption), option:",
                matchOption );
   TrafficPolicyCli::cacheInstallError< CpuBinding >( cpuState( policyMapStatus->name() ),
                                                      matchOption );
}

void ShowTrafficPolicyCpu::renderTrafficPolicy( unsigned fd, unsigned format, unsigned ) {
   static L3::VrfName const all( "all" );
   renderPolicies< CpuBinding >( fd, format, { policyState(), policyName() },
                                 { .errors = errors(),
                                   .countersPerInterface = countersPerInterface(),
                                   .allVrfs = vrfConfig()->trafficPolicies().contains( all ) } );
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
