#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"

#include "TrafficPolicy/counters/CounterView.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/vorn/Describe.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "TrafficPolicy/views/Reply.h"

#include <cstdio>
#include <utility>

namespace TrafficPolicyCli {

VORN_TYPE( ShowTrafficPolicyBase )

ShowTrafficPolicyBase::ShowTrafficPolicyBase(
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
   Vorn::Ptr< TrafficPolicy::Status const > const & status,
   Vorn::Ptr< TrafficPolicy::Counter const > const & counter, Vorn::String policyName, bool summary,
   bool errors, bool detail, bool counters, bool countersPerInterface )
   : config_( config )
   , status_( status )
   , counter_( counter )
   , policyName_( std::move( policyName ) )
   , summary_( summary )
   , errors_( errors )
   , detail_( detail )
   , counters_( counters )
   , countersPerInterface_( countersPerInterface ) {}

void ShowTrafficPolicyBase::renderTrafficPolicy( unsigned, unsigned, unsigned ) {}

void ShowTrafficPolicyBase::renderCountPerInterface( wendo::RendererV2 * ) {}

void ShowTrafficPolicyBase::cacheIntfStatus(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & ) {}

void ShowTrafficPolicyBase::cacheInstalledState(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const &, PolicyMap::ClassMapMatchOption ) {}

void ShowTrafficPolicyBase::cacheInstallError(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const &, PolicyMap::ClassMapMatchOption ) {}

Vorn::Ptr< PolicyState > ShowTrafficPolicyBase::getOrCreatePolicyState( Vorn::String ) {
   return nullptr;
}

Vorn::Ptr< PolicyState >
ShowTrafficPolicyBase::policyStateBy( Vorn::Ptr< PolicyState > ( *factory )( Vorn::String ),
                                      Vorn::String const & name ) {
   if ( auto const * present = policyState( name ) ) {
      return *present;
   }
   auto state = factory( name );
   policyStateIs( name, state );
   return state;
}

void ShowTrafficPolicyBase::render( unsigned fd, unsigned format, unsigned revision ) {
   try {
      cachePoliciesState();
      if ( counters() ) {
         renderTrafficPolicyCounters( fd, format, revision );
      } else {
         renderTrafficPolicy( fd, format, revision );
      }
   } catch ( wendo::SigIntException const & exception ) {
      std::printf( "exiting %s\n", exception.what() );
      std::fflush( stdout );
   }
}

void ShowTrafficPolicyBase::renderTrafficPolicyCounters( unsigned fd, unsigned format, unsigned ) {
   Reply reply( fd, format );
   reply.open();
   renderCountPerInterface( &reply.renderer() );
   renderPolicyCounters( reply.renderer(), { policyState(), policyName() },
                         countersPerInterface() );
   reply.close();
}

Vorn::Ptr< ShowTrafficPolicyBase >
showTrafficPolicyBaseFactory( Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
                              Vorn::Ptr< TrafficPolicy::Status const > const & status,
                              Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                              Vorn::String policyName, bool summary, bool errors, bool detail,
                              bool counters, bool countersPerInterface ) {
   return Vorn::create< ShowTrafficPolicyBase >( config, status, counter, policyName, summary,
                                                 errors, detail, counters, countersPerInterface );
}

} // namespace TrafficPolicyCli
