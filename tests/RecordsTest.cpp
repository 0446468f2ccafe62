// Records that are missing or say what they must not: skipped with a trace where they are input, an
// assertion that names it where an invariant is broken.

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "TrafficPolicy/model/PolicyStateInterface.h"
#include "TrafficPolicy/model/Trace.h"
#include "tests/Support.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>

namespace {

using namespace TrafficPolicyCli;
using PolicyMap::ActionType;
using PolicyMap::ClassMapMatchOption;
using testing::HasSubstr;
using Vorn::create;
using Vorn::Ptr;

constexpr auto ipv4 = ClassMapMatchOption::ipv4;
std::string traced;

// The policy P with one full rule, R, on one interface in one VRF, that failed.
struct Records {
   Records() {
      config->policyMapConfigIs( "P", policyConfig );
      policyConfig->currCfgIs( policy );
      policy->classSequenceIs( 1, "R" );
      policy->rawClassMapIs( "R", rule );
      policy->classActionIs( "R", actions );
      policy->namedCounterIs( "c" );
      rule->matchIs( ipv4, match );
      match->structuredFilterIs( filter );
      filter->protocolsIs( { { 1, 1 } }, field );
      field->icmpIs( { { 8, 8 } }, create< Classification::TypeAndCode >() );
      actions->policyActionIs( ActionType::count, create< PolicyMap::CountAction >( "c" ) );
      status->policyMapStatusIs( "P", policyStatus );
      status->perIntfCountingIs( true );
      classStatus->matchIs( ipv4 );
      policyStatus->cmapIs( "R", classStatus );
      policyStatus->counterStatusIs( "c", counter );
      counter->intfCountDataIs( et1, create< PolicyMap::IntfCountData >( et1, Umbo::UniqueId() ) );
      auto const intf = create< PolicyMap::IntfStatus >();
      intf->installedIs( ipv4, { 2, "full" } );
      policyStatus->intfStatusIs( et1, intf );
      l3->intfStatusIs( et1, create< L3::Intf::Status >( L3::VrfName( "red" ) ) );
   }
   Ptr< ShowTrafficPolicyBase > cpu( bool errors = false, bool counters = false ) {
      return showTrafficPolicyCpuFactory( config, status, store, "", false, errors, false, counters,
                                          true, vrfs, nullptr, l3 );
   }
   Ptr< ShowTrafficPolicyBase > interface( bool errors = false ) {
      return showTrafficPolicyInterfaceFactory( config, status, store, "", false, errors, false,
                                                false, true, intfs, nullptr );
   }
   // Every view, and a clear: text of the rules, errors and counters.
   std::string views() {
      trafficPolicyCounterFactory( status, store )->clearCounter();
      for ( bool const errors : { false, true } ) {
         test::reply( *interface( errors ), 2 );
      }
      return test::reply( *cpu(), 1 ) + test::reply( *cpu( true ), 1 )
             + test::reply( *cpu( false, true ), 1 );
   }

   Pelx::IntfId et1{ "Et1" };
   Ptr< TrafficPolicy::TrafficPolicyConfig > config =
      create< TrafficPolicy::TrafficPolicyConfig >();
   Ptr< PolicyMap::PolicyMapConfig > policyConfig = create< PolicyMap::PolicyMapConfig >();
   Ptr< PolicyMap::PolicyMapSubConfig > policy = create< PolicyMap::PolicyMapSubConfig >( "P" );
   Ptr< PolicyMap::ClassMapSubConfig > rule = create< PolicyMap::ClassMapSubConfig >();
   Ptr< PolicyMap::ClassMapMatch > match = create< PolicyMap::ClassMapMatch >( ipv4 );
   Ptr< Classification::StructuredFilter > filter = create< Classification::StructuredFilter >();
   Ptr< Classification::ProtoField > field = create< Classification::ProtoField >();
   Ptr< PolicyMap::ClassAction > actions = create< PolicyMap::ClassAction >();
   Ptr< TrafficPolicy::Status > status = create< TrafficPolicy::Status >();
   Ptr< PolicyMap::PolicyMapStatus > policyStatus = create< PolicyMap::PolicyMapStatus >( "P" );
   Ptr< PolicyMap::ClassMapStatus > classStatus = create< PolicyMap::ClassMapStatus >( "R" );
   Ptr< PolicyMap::PacketDataStatus > counter = create< PolicyMap::PacketDataStatus >( "c" );
   Ptr< TrafficPolicy::Counter > store = create< TrafficPolicy::Counter >();
   Ptr< PolicyMap::VrfConfig > vrfs = create< PolicyMap::VrfConfig >();
   Ptr< PolicyMap::IntfConfig > intfs = create< PolicyMap::IntfConfig >();
   Ptr< L3::Intf::StatusDir > l3 = create< L3::Intf::StatusDir >();
};

TEST( Records, ThatAreMissingAreTracedAndSkipped ) {
   struct {
      std::function< void( Records & ) > spoil;
      std::string trace;
      std::string gone; // what the whole reply has and the spoilt one lacks
   } const cases[] = {
      { []( auto & r ) { r.status->policyMapStatusIs( "P", nullptr ); },
        "PolicyMapStatus not found for P", "Traffic policy" },
      { []( auto & r ) { r.config->policyMapConfigIs( "P", nullptr ); },
        "PolicyMapConfig not found for P", "match R" },
      { []( auto & r ) {
          r.policyConfig->currCfgIs( create< PolicyMap::PolicyMapSubConfig >( "Q" ) );
       },
        "currCfg not found for P", "match R" },
      { []( auto & r ) { r.policyStatus->cmapIs( "R", nullptr ); },
        "ClassMapStatus not found for R", "match R" },
      { []( auto & r ) { r.policy->rawClassMapIs( "R", nullptr ); }, "structured filter not found",
        "Protocol" },
      { []( auto & r ) { r.rule->matchIs( ipv4, nullptr ); }, "structured filter not found",
        "Protocol" },
      { []( auto & r ) {
          r.filter->protocolsIs( { { 1, 1 } }, nullptr );
       },
        "ProtoField not found for protocol 1-1", "Protocol" },
      { []( auto & r ) {
          r.field->icmpIs( { { 8, 8 } }, nullptr );
       },
        "TypeAndCode not found for ICMP type 8-8", "ICMP type" },
      { []( auto & r ) { r.policy->classActionIs( "R", nullptr ); }, "No actions mapped to R",
        "Actions" },
      { []( auto & r ) { r.policyStatus->intfStatusIs( r.et1, nullptr ); },
        "IntfStatus not found for Et1", "VRFs: red" },
      { []( auto & r ) { r.policyStatus->counterStatusIs( "c", nullptr ); },
        "PacketDataStatus not found for c", "   c:\n" },
      { []( auto & r ) { r.counter->intfCountDataIs( r.et1, nullptr ); },
        "IntfCountData not found for Et1", "Et1: 0 packets" },
      { []( auto & r ) { r.l3->intfStatusIs( r.et1, nullptr ); }, "", "VRFs: red" },
   };
   trace.sinkIs( []( Vorn::TraceFacility const &, int, std::string_view, std::string_view text ) {
      traced.append( text ).append( "\n" );
   } );
   trace.levelMaskIs( 0x1ff );
   std::string const whole = Records().views();
   for ( auto const & [spoil, message, gone] : cases ) {
      Records records;
      spoil( records );
      traced.clear();
      EXPECT_THAT( whole, HasSubstr( gone ) );
      EXPECT_THAT( records.views(), testing::Not( HasSubstr( gone ) ) ) << message;
      EXPECT_THAT( traced, HasSubstr( message ) );
   }
   // Values outside an enumeration, and a count action of another class, which the full view
   // asserts.
   Records records;
   records.actions->policyActionIs(
      ActionType::police, create< PolicyMap::PoliceAction >( 7, PolicyMap::RateUnit{ 200 } ) );
   EXPECT_THAT( records.views(), HasSubstr( "Police rate 7 \n" ) );
   EXPECT_THAT( traced, HasSubstr( "Unknown rate unit: 200" ) );
   records.actions->policyActionIs( ActionType::count,
                                    create< PolicyMap::Action >( ActionType::count ) );
   EXPECT_EQ( test::reply( *records.cpu( false, true ), 1 ), "Traffic policy P\n" );
   EXPECT_THAT( traced, HasSubstr( "Class: R has a count action of another class" ) );
   trace.levelMaskIs( 0 );
   trace.sinkIs( Vorn::TraceFacility::toStandardError );
}

TEST( RecordsDeathTest, BrokenInvariantsAreNamed ) {
   struct {
      std::function< void( Records & ) > spoil;
      char const * assertion;
   } const cases[] = {
      { []( auto & r ) { r.config = nullptr; }, "`config\\(\\)'" },
      { []( auto & r ) { r.status = nullptr; }, "`status\\(\\)'" },
      { []( auto & r ) { r.vrfs = nullptr; }, "`vrfConfig\\(\\)'" },
      { []( auto & r ) { r.l3 = nullptr; }, "`l3IntfStatusDir\\(\\)'" },
   };
   for ( auto const & [spoil, assertion] : cases ) {
      Records records;
      spoil( records );
      EXPECT_DEATH( test::reply( *records.cpu(), 1 ), assertion );
   }
   Records records;
   records.store = nullptr; // every count is the hardware's
   EXPECT_THAT( test::reply( *records.cpu(), 1 ), HasSubstr( "c: 0 packets" ) );
   EXPECT_DEATH( trafficPolicyCounterFactory( records.status, nullptr )->clearCounter(),
                 "`counter\\(\\)'" );
   records.intfs = nullptr;
   EXPECT_DEATH( test::reply( *records.interface(), 1 ), "`intfConfig\\(\\)'" );

   auto const foreign = records.cpu();
   foreign->policyStateIs( "P", policyStateInterfaceFactory( "P" ) );
   EXPECT_DEATH( test::reply( *foreign, 1 ), "`stateOfSide'" );
   for ( bool const counters : { false, true } ) {
      auto const holed = records.cpu( false, counters );
      auto const state = holed->getOrCreatePolicyState( "Q" );
      state->policyMapConfigIs( records.policyConfig );
      state->ruleCountIs( 1 );
      EXPECT_DEATH( test::reply( *holed, 1 ), "`classMap(Match|Status)'" );
   }
   EXPECT_DEATH( records.cpu()->cacheClassState( nullptr ), "`subConfig'" );
}

// Whether a counter is undefined is a question to the cached policy, not to the configuration.
TEST( Records, UndefinedCountersAreAskedOfTheCachedPolicy ) {
   Records records;
   records.policy->namedCounterDelAll();
   auto const show = records.cpu();
   show->getOrCreatePolicyState( "P" )->namedCounterIs( "c", true );
   EXPECT_THAT( test::reply( *show, 1 ), testing::Not( HasSubstr( "WARNING: One or more" ) ) );
   EXPECT_THAT( test::reply( *records.cpu(), 1 ), HasSubstr( "WARNING: One or more" ) );
}

// A policy that is cached by name without a status has a record without rules.
TEST( Records, PolicyWithoutStatusHasNoRules ) {
   Records records;
   records.status->policyMapStatusDel( "P" );
   for ( auto const & show : { records.cpu(), records.interface() } ) {
      show->cachePolicyState( "P" );
      show->cacheClassState( records.policy );
      EXPECT_EQ( ( *show->policyState( "P" ) )->ruleCount(), 0u );
      EXPECT_FALSE( ( *show->policyState( "P" ) )->policyMapStatus() );
   }
}

// One interrupt ends the caching wherever it is, before anything is written.
TEST( Records, InterruptEndsCachingInEveryLoop ) {
   std::function< void( Records & ) > const empty[] = {
      []( auto & r ) { r.status->policyMapStatusDelAll(), r.vrfs->trafficPoliciesIs( {}, "P" ); },
      []( auto & r ) { r.policy->namedCounterDelAll(), r.policyStatus->intfStatusDelAll(); },
      []( auto & r ) { r.policyStatus->cmapDelAll(); },
   };
   for ( auto const & prepare : empty ) {
      Records records;
      prepare( records );
      auto const show = records.cpu();
      wendo::interrupt::request();
      EXPECT_THROW( show->cachePoliciesState(), wendo::SigIntException );
      EXPECT_FALSE( wendo::interrupt::requested );
      wendo::interrupt::request();
      EXPECT_THROW( show->cacheIntfStatus( Records().policyStatus ), wendo::SigIntException );
      wendo::interrupt::request();
      EXPECT_THROW( trafficPolicyCounterFactory( Records().status, records.store )->clearCounter(),
                    wendo::SigIntException );
   }
}

} // namespace
