#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"

#include "TrafficPolicy/counters/CounterView.h"
#include "TrafficPolicy/model/PolicyState.h"
#include "TrafficPolicy/platform/vorn/Describe.h"
#include "TrafficPolicy/platform/wendo/Descriptor.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "TrafficPolicy/views/Reply.h"

#include <unistd.h>

#include <string>

namespace TrafficPolicyCli {

VORN_TYPE( ShowTrafficPolicyBase )

VORN_OPAQUE_MAP_OF( ShowTrafficPolicyBase, Vorn::String, Vorn::Ptr< PolicyState >, policyState )

ShowTrafficPolicyBase::ShowTrafficPolicyBase() = default;
ShowTrafficPolicyBase::~ShowTrafficPolicyBase() = default;

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

void ShowTrafficPolicyBase::render( unsigned fd, unsigned format, unsigned revision ) {
   try {
      cachePoliciesState();
      if ( counters() ) {
         renderTrafficPolicyCounters( fd, format, revision );
      } else {
         renderTrafficPolicy( fd, format, revision );
      }
   } catch ( wendo::SigIntException const & exception ) {
      // A reader that has stalled must not keep the command from ending.
      wendo::writeLastLine( STDOUT_FILENO,
                            std::string( "exiting " ).append( exception.what() ).append( "\n" ) );
   }
}

void ShowTrafficPolicyBase::renderTrafficPolicyCounters( unsigned fd, unsigned format, unsigned ) {
   writeReply( fd, format, [&]( wendo::RendererV2 & renderer ) {
      renderCountPerInterface( &renderer );
      renderPolicyCounters( renderer, { policyState(), policyName() }, countersPerInterface() );
   } );
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
