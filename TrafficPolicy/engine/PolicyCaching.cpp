// The caching of policies and rules: one record per policy with its rules in order.

#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"
#include "TrafficPolicy/model/Columns.h"
#include "TrafficPolicy/model/CountAction.h"
#include "TrafficPolicy/model/PolicyState.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"

namespace TrafficPolicyCli {

using PolicyMap::ClassMapMatch;
using PolicyMap::ClassMapMatchOption;
using PolicyMap::ClassMapStatus;
using PolicyMap::ClassMapSubConfig;
using PolicyMap::PolicyMapSubConfig;

namespace {

// The family that the class is installed for, or null. More than one fails an assertion.
ClassMapMatchOption const * installedFamily( ClassMapStatus const * cmapStatus ) {
   switch ( cmapStatus->matchs() ) {
   case 0:
      trace.write( 1, "No match option status found for ", cmapStatus->name() );
      return nullptr;
   case 1:
      return &*cmapStatus->match().begin();
   default:
      VORN_ASSERT( cmapStatus->matchs() == 0 );
   }
   return nullptr;
}

// The class's match condition in the family, or null where the configuration has none.
Vorn::Ptr< ClassMapMatch const > const * matchCondition( ClassMapSubConfig const * classConfig,
                                                         Vorn::String const & className,
                                                         ClassMapMatchOption option ) {
   auto const * match = classConfig ? classConfig->match( option ) : nullptr;
   if ( !match || !*match ) {
      return nullptr;
   }
   trace.write( 7, "Found class match config for ", className, ", ", option );
   return match;
}

template< typename T >
T const * pointee( Vorn::Ptr< T const > const * handle ) {
   return handle ? handle->get() : nullptr;
}

// Marks the policy when the rule counts into a counter that the policy does not declare.
void checkCounter( PolicyState & ps, PolicyMap::ClassAction const * actions,
                   Vorn::String const & className ) {
   auto const * count = countActionOf( actions, className );
   if ( count && !count->counterName().empty() && !ps.namedCounter( count->counterName() ) ) {
      trace.write( 1, "Class: ", className, " has undefined counter: ", count->counterName() );
      ps.undefinedCounterIs( true );
   }
}

} // namespace

void ShowTrafficPolicyBase::cachePoliciesState() {
   trace.write( 8, "virtual void TrafficPolicyCli::ShowTrafficPolicyBase::cachePoliciesState()" );
   VORN_ASSERT( status() );
   auto const & statuses = status()->policyMapStatus();
   auto at = statuses.begin();
   while ( at != statuses.end() ) {
      wendo::interrupt::check();
      // Looked up by key after each policy, so that the collection may change meanwhile.
      Vorn::String const name = at->first;
      if ( at->second ) {
         cachePolicyState( name );
      } else {
         trace.write( 7, "PolicyMapStatus not found for ", name );
      }
      at = statuses.upperBound( name );
   }
}

void ShowTrafficPolicyBase::cachePolicyState( Vorn::String policyName ) {
   trace.write( 8,
                "virtual void TrafficPolicyCli::ShowTrafficPolicyBase::cachePolicyState("
                "Vorn::String)policyName:",
                policyName );
   VORN_ASSERT( config() );
   VORN_ASSERT( status() );
   auto const ps = getOrCreatePolicyState( policyName );
   VORN_ASSERT( ps );
   ps->summaryIs( summary() );
   ps->errorsIs( errors() );
   ps->detailIs( detail() );
   ps->indentCountPerLevelIs( Columns::step );
   ps->byteCountersSupportedIs( status()->byteCountersSupported() );
   auto const * policyConfig = config()->policyMapConfig( policyName );
   ps->policyMapConfigIs( policyConfig ? *policyConfig : nullptr );
   auto const * policyStatus = status()->policyMapStatus( policyName );
   ps->policyMapStatusIs( policyStatus ? *policyStatus : nullptr );
   if ( !ps->policyMapConfig() ) {
      trace.write( 7, "PolicyMapConfig not found for ", policyName );
      return;
   }
   auto const subConfig = ps->policyMapConfig()->currCfg();
   if ( !subConfig || subConfig->policyName() != policyName ) {
      trace.write( 7, "currCfg not found for ", policyName );
      return;
   }
   if ( !ps->policyMapStatus() || ps->policyMapStatus()->name() != policyName ) {
      trace.write( 7, "PolicyMapStatus not found for ", policyName );
      return;
   }
   for ( auto const & name : subConfig->namedCounter() ) {
      wendo::interrupt::check();
      ps->namedCounterIs( name, true );
   }
   cacheClassState( subConfig );
   cacheIntfStatus( ps->policyMapStatus() );
   ps->matchOptionListIs( ClassMapMatchOption::ipv4 );
   ps->matchOptionListIs( ClassMapMatchOption::ipv6 );
   for ( auto const option : ps->matchOptionList() ) {
      cacheInstalledState( ps->policyMapStatus(), option );
      cacheInstallError( ps->policyMapStatus(), option );
   }
   ps->counterIs( counter() );
}

void ShowTrafficPolicyBase::cacheClassState(
   Vorn::Ptr< PolicyMapSubConfig const > const & subConfig ) {
   VORN_ASSERT( subConfig );
   auto const ps = getOrCreatePolicyState( subConfig->policyName() );
   VORN_ASSERT( ps );
   if ( !ps->policyMapStatus() ) {
      trace.write( 7, "PolicyMapStatus not found for ", subConfig->policyName() );
      return;
   }
   auto const & sequence = subConfig->classSequence();
   ps->classMapConfigReserve( sequence.size() );
   ps->classMapStatusReserve( sequence.size() );
   // Configuration and status usually list their classes in rule order.
   PolicyMap::ClassStatuses::AheadCursor statuses( ps->policyMapStatus()->cmap() );
   PolicyMap::ClassConfigs::AheadCursor configs( subConfig->rawClassMap() );
   PolicyMap::ClassActions::AheadCursor actions( subConfig->classAction() );
   unsigned rule = 0;
   for ( auto const & [number, className] : sequence ) {
      wendo::interrupt::check();
      auto const * status = statuses.find( className );
      if ( !status || !*status ) {
         trace.write( 7, "ClassMapStatus not found for ", className );
         continue;
      }
      ClassMapMatchOption const * option = installedFamily( status->get() );
      if ( !option ) {
         continue;
      }
      auto const * match =
         matchCondition( pointee( configs.find( className ) ), className, *option );
      trace.write( 7, "Caching ", rule, " ", className, ", ", *option );
      ps->classMapStatusIs( rule, *status );
      // Every cached rule has a condition, be it an empty one.
      ps->classMapConfigIs( rule, match ? *match : Vorn::create< ClassMapMatch >( *option ) );
      checkCounter( *ps, pointee( actions.find( className ) ), className );
      ++rule;
   }
   ps->ruleCountIs( rule );
   trace.write( 4, "ruleCount ", rule, ", total class count ", sequence.size() );
}

} // namespace TrafficPolicyCli
