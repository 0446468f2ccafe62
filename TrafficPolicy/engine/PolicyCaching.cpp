// The caching of policies and rules: one record per policy with its rules in order.

#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/vorn/Prefetch.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"

namespace TrafficPolicyCli {

using PolicyMap::ClassMapMatch;
using PolicyMap::ClassMapMatchOption;
using PolicyMap::ClassMapStatus;
using PolicyMap::ClassMapSubConfig;
using PolicyMap::PolicyMapSubConfig;

namespace {

// The indentation of the text views.
constexpr uint32_t indentStep = 3;

// The family that the class is installed for, or null: at most one is allowed.
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
   if ( match ) {
      trace.write( 7, "Found class match config for ", className, ", ", option );
   }
   return match;
}

// The named counter that the class counts into, or null.
Vorn::String const * namedCounterOf( PolicyMap::ClassAction const * actions ) {
   auto const * count = actions ? actions->policyAction( PolicyMap::ActionType::count ) : nullptr;
   auto const * countAction = PolicyMap::actionAs< PolicyMap::CountAction >( count );
   return countAction && !countAction->counterName().empty() ? &countAction->counterName()
                                                             : nullptr;
}

template< typename T >
T const * pointee( Vorn::Ptr< T const > const * handle ) {
   return handle ? handle->get() : nullptr;
}

using Statuses = Vorn::HashMap< Vorn::String, Vorn::Ptr< ClassMapStatus const > >;
using Configs = Vorn::HashMap< Vorn::String, Vorn::Ptr< ClassMapSubConfig const > >;

// Asks for the status and the match condition of rules to come, step by step like prefetchActions.
void prefetchRules( Statuses::Cursor const & statuses, Configs::Cursor const & configs ) {
   constexpr uint32_t far = 12; // rules
   constexpr uint32_t middle = 8;
   constexpr uint32_t near = 4;
   Vorn::prefetch( pointee( statuses.ahead( far ) ) );
   Vorn::prefetch( pointee( configs.ahead( far ) ) );
   if ( auto const * status = pointee( statuses.ahead( middle ) ) ) {
      status->match().prefetch();
   }
   if ( auto const * config = pointee( configs.ahead( middle ) ) ) {
      config->match().prefetch();
   }
   if ( auto const * config = pointee( configs.ahead( near ) ) ) {
      for ( auto const & [option, match] : config->match() ) {
         Vorn::prefetch( match.get() );
      }
   }
}

} // namespace

void ShowTrafficPolicyBase::cachePoliciesState() {
   trace.write( 8, "virtual void TrafficPolicyCli::ShowTrafficPolicyBase::cachePoliciesState()" );
   auto const & statuses = status()->policyMapStatus();
   auto at = statuses.begin();
   while ( at != statuses.end() ) {
      // Positioned anew by key after each policy, so that the collection may change meanwhile.
      Vorn::String const name = at->first;
      cachePolicyState( name );
      at = statuses.upperBound( name );
   }
}

void ShowTrafficPolicyBase::cachePolicyState( Vorn::String policyName ) {
   trace.write( 8,
                "virtual void TrafficPolicyCli::ShowTrafficPolicyBase::cachePolicyState("
                "Vorn::String)policyName:",
                policyName );
   auto const ps = getOrCreatePolicyState( policyName );
   ps->summaryIs( summary() );
   ps->errorsIs( errors() );
   ps->detailIs( detail() );
   ps->indentCountPerLevelIs( indentStep );
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
   if ( !subConfig ) {
      trace.write( 7, "currCfg not found for ", policyName );
      return;
   }
   for ( auto const & name : subConfig->namedCounter() ) {
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
   auto const ps = getOrCreatePolicyState( subConfig->policyName() );
   auto const & sequence = subConfig->classSequence();
   ps->classMapConfigReserve( sequence.size() );
   ps->classMapStatusReserve( sequence.size() );
   // Configuration and status usually list their classes in rule order.
   Statuses::Cursor statuses( ps->policyMapStatus()->cmap() );
   Configs::Cursor configs( subConfig->rawClassMap() );
   PolicyMap::ClassActions::Cursor actions( subConfig->classAction() );
   unsigned rule = 0;
   for ( auto const & [number, className] : sequence ) {
      wendo::interrupt::check();
      prefetchRules( statuses, configs );
      PolicyMap::prefetchActions( actions );
      auto const * status = statuses.find( className );
      if ( !status ) {
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
      Vorn::String const * counterName = namedCounterOf( pointee( actions.find( className ) ) );
      if ( counterName && !subConfig->namedCounter( *counterName ) ) {
         trace.write( 1, "Class: ", className, " has undefined counter: ", *counterName );
         ps->undefinedCounterIs( true );
      }
      ++rule;
   }
   ps->ruleCountIs( rule );
   trace.write( 4, "ruleCount ", rule, ", total class count ", sequence.size() );
}

} // namespace TrafficPolicyCli
