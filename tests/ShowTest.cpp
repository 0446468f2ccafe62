// Show objects and clearing over records in memory: what no state file can say.

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "TrafficPolicy/counters/CounterLookup.h"
#include "TrafficPolicy/model/PolicyState.h"
#include "TrafficPolicy/views/CliLabel.h"
#include "tests/Support.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace TrafficPolicyCli;
using Classification::StructuredFilter;
using PolicyMap::Action;
using PolicyMap::ActionType;
using PolicyMap::ClassMapMatchOption;
using testing::ElementsAre;
using testing::HasSubstr;
using Vorn::create;
using Vorn::Ptr;

// One policy, "P", to which rules are added.
class ShowTest : public testing::Test {
protected:
   ShowTest() {
      config->policyMapConfigIs( "P", policyConfig );
      policyConfig->currCfgIs( policy );
      status->policyMapStatusIs( "P", policyStatus );
   }

   Ptr< PolicyMap::ClassMapStatus > addRule( char const * name, unsigned family = 0 ) {
      policy->classSequenceIs( static_cast< uint32_t >( policy->classSequence().size() ), name );
      auto const rule = create< PolicyMap::ClassMapStatus >( name );
      rule->matchIs( ClassMapMatchOption{ family } );
      policyStatus->cmapIs( name, rule );
      return rule;
   }
   Ptr< StructuredFilter > addFilter( char const * name, unsigned family = 0 ) {
      auto const filter = create< StructuredFilter >();
      auto const match = create< PolicyMap::ClassMapMatch >( ClassMapMatchOption{ family } );
      match->structuredFilterIs( filter );
      auto const rule = create< PolicyMap::ClassMapSubConfig >();
      rule->matchIs( ClassMapMatchOption{ family }, match );
      policy->rawClassMapIs( name, rule );
      return filter;
   }
   void addActions( char const * name,
                    std::vector< std::pair< unsigned, Ptr< Action const > > > const & actions ) {
      auto const rule = create< PolicyMap::ClassAction >();
      for ( auto const & [type, action] : actions ) {
         rule->policyActionIs( ActionType{ type }, action );
      }
      policy->classActionIs( name, rule );
   }
   template< typename Show = ShowTrafficPolicyCpu >
   Ptr< Show > cpu( bool errors = false, bool detail = false, bool counters = false ) {
      return create< Show >( config, status, store, Vorn::String(), false, errors, detail, counters,
                             true, vrfs, allVrfs, l3Interfaces );
   }
   static std::string reply( ShowTrafficPolicyBase & show, unsigned format = 1 ) {
      return test::reply( show, format );
   }

   Ptr< TrafficPolicy::TrafficPolicyConfig > config =
      create< TrafficPolicy::TrafficPolicyConfig >();
   Ptr< TrafficPolicy::Status > status = create< TrafficPolicy::Status >();
   Ptr< TrafficPolicy::Counter > store = create< TrafficPolicy::Counter >();
   Ptr< PolicyMap::VrfConfig > vrfs = create< PolicyMap::VrfConfig >();
   Ptr< Ip::AllVrfConfig > allVrfs = create< Ip::AllVrfConfig >();
   Ptr< L3::Intf::StatusDir > l3Interfaces = create< L3::Intf::StatusDir >();
   Ptr< PolicyMap::PolicyMapConfig > policyConfig = create< PolicyMap::PolicyMapConfig >();
   Ptr< PolicyMap::PolicyMapSubConfig > policy = create< PolicyMap::PolicyMapSubConfig >( "P" );
   Ptr< PolicyMap::PolicyMapStatus > policyStatus = create< PolicyMap::PolicyMapStatus >( "P" );
};
using ShowDeathTest = ShowTest;

TEST_F( ShowTest, BaseShowsNothing ) {
   status->policyMapStatusDelAll();
   for ( unsigned flag = 0; flag < 5; ++flag ) {
      auto const show = showTrafficPolicyBaseFactory( config, status, store, "P", flag == 0,
                                                      flag == 1, flag == 2, flag == 3, flag == 4 );
      EXPECT_EQ( show->config(), config );
      EXPECT_EQ( show->status(), status );
      EXPECT_EQ( show->counter(), store );
      EXPECT_EQ( show->policyName().view(), "P" );
      EXPECT_EQ( ( std::vector{ show->summary(), show->errors(), show->detail(), show->counters(),
                                show->countersPerInterface() } ),
                 ( std::vector{ flag == 0, flag == 1, flag == 2, flag == 3, flag == 4 } ) );
      EXPECT_EQ( show->getOrCreatePolicyState( "P" ), nullptr );
      show->cacheIntfStatus( policyStatus );
      show->cacheInstalledState( policyStatus, ClassMapMatchOption::ipv4 );
      show->cacheInstallError( policyStatus, ClassMapMatchOption::ipv4 );
      EXPECT_EQ( reply( *show, 2 ), show->counters() ? "{\"trafficPolicies\":{}}\n" : "" );
      EXPECT_TRUE( show->policyState().empty() );
   }
}

TEST_F( ShowTest, PolicyWithoutConfigurationKeepsItsStatusOnly ) {
   status->policyMapStatusIs( "Q", create< PolicyMap::PolicyMapStatus >( "Q" ) );
   status->policyMapStatusIs( "R", create< PolicyMap::PolicyMapStatus >( "R" ) );
   config->policyMapConfigIs( "R", create< PolicyMap::PolicyMapConfig >() );
   auto const show = cpu();
   show->cachePoliciesState();
   for ( auto const & [name, state] : show->policyState() ) {
      bool const configured = state->name().view() == "P";
      EXPECT_EQ( state->matchOptionList().size(), configured ? 2u : 0u ) << name;
      EXPECT_EQ( state->counter(), configured ? store : nullptr ) << name;
      EXPECT_EQ( state->policyMapStatus(), *status->policyMapStatus( name ) );
   }
   EXPECT_EQ( show->policyState().size(), 3u );
}

TEST_F( ShowDeathTest, BrokenInvariantsStopTheProcess ) {
   EXPECT_DEATH( reply( *cpu( true, true ) ), "!policyState->detail\\(\\)" );
   std::string const label = "No such label, however \"long\" it may be";
   EXPECT_DEATH( CliLabel{ label }, "!!jsonName && \"Invalid mapping in cliMap\"" );
   auto const rule = addRule( "R" );
   auto const filter = addFilter( "R" );
   filter->sourcesIs( Pelx::IpGenPrefix() );
   EXPECT_THAT( reply( *cpu() ), HasSubstr( "Source prefix: 0.0.0.0/0\n" ) );
   filter->srcPrefixSetsIs( "set" );
   EXPECT_DEATH( reply( *cpu() ), "!structuredFilter->srcPrefixSets\\(\\)" );
   filter->sourcesDelAll();
   filter->destinationsIs( Pelx::IpGenPrefix() );
   filter->dstPrefixSetsIs( "set" );
   EXPECT_DEATH( reply( *cpu() ), "!structuredFilter->dstPrefixSets\\(\\)" );
   rule->matchIs( ClassMapMatchOption::mac );
   EXPECT_DEATH( reply( *cpu() ), "cmapStatus->matchs\\(\\) == 0" );

   addRule( "R", 2 );
   policyStatus->cmapDel( "R" );
   addRule( "R", 2 );
   addFilter( "R", 2 )->protocolsIs( { { 6, 6 } }, create< Classification::ProtoField >() );
   EXPECT_DEATH( reply( *cpu() ), "false && \"Unrecognized match option\"" );
   EXPECT_THAT( reply( *cpu(), 2 ), HasSubstr( "{\"protocolRange\":{\"low\":6,\"high\":6}}" ) );
}

TEST_F( ShowDeathTest, ActionsThatAreNotWhatTheyShould ) {
   addRule( "R" );
   for ( unsigned type = 0; type <= 21; ++type ) {
      auto const plain = create< Action >( ActionType{ type } );
      addActions( "R", { { type, plain } } );
      if ( type == 5 || type == 16 ) {
         EXPECT_THAT( reply( *cpu() ), HasSubstr( type == 5 ? "Drop\n" : "Log\n" ) );
      } else if ( type == 7 || ( type >= 12 && type <= 14 ) ) {
         EXPECT_DEATH( reply( *cpu() ), "Assertion" ) << type;
         addActions( "R", { { type, nullptr } } );
         EXPECT_DEATH( reply( *cpu() ), "Assertion" ) << type;
      } else {
         EXPECT_DEATH( reply( *cpu() ), "false && \"Unexpected action type\"" ) << type;
      }
   }
   // Those above the last type are no business of the view.
   auto const other = create< Action >( ActionType{ 22 } );
   addActions( "R", { { 22, other }, { ~0u, nullptr } } );
   std::string const without = reply( *cpu() );
   EXPECT_THAT( without, testing::EndsWith( "      match R ipv4\n" ) );
   addActions( "R", { { 22, other }, { 16, other } } );
   EXPECT_EQ( reply( *cpu() ), without + "         Actions: Log\n" );
   EXPECT_THAT( reply( *cpu(), 2 ), HasSubstr( "\"actions\":{\"log\":true}}]" ) );
}

TEST_F( ShowTest, FamiliesAndFormatsWithoutAName ) {
   addRule( "R", 7 );
   EXPECT_THAT( reply( *cpu() ), testing::EndsWith( "      match R \n" ) );
   EXPECT_THAT( reply( *cpu(), 2 ), HasSubstr( "\"matchOption\":\"\"}" ) );
   addFilter( "R", 7 )->ttlIs( { { 1, 2 } } );
   addActions( "R", { { 5, create< Action >( ActionType::drop ) } } );
   for ( bool const counters : { false, true } ) {
      EXPECT_EQ( reply( *cpu( false, false, counters ), 3 ), "" );
   }
}

TEST_F( ShowTest, ValuesThatNoViewKnows ) {
   addRule( "R" );
   auto const filter = addFilter( "R" );
   auto const fragment = create< Classification::Fragment >();
   fragment->fragmentTypeIs( Classification::FragmentType::other );
   fragment->offsetIs( { { 1, 2 } } );
   filter->fragmentIs( fragment );
   filter->neighborProtocolIs( Classification::RoutingProtocol{ 2 } );
   filter->matchL4ProtocolIs( Classification::RoutingProtocol{ 2 } );
   auto const maskOnly = create< Classification::ProtoField >();
   maskOnly->tcpFlagsIs( { 0, Classification::TcpFlagAndMask::initialSyn } );
   for ( uint32_t const low : { 5, 6 } ) {
      for ( uint32_t const high : { 6, 7 } ) {
         filter->protocolsIs( { { low, high } }, maskOnly );
      }
   }
   EXPECT_THAT( reply( *cpu() ), testing::EndsWith( "      match R ipv4\n"
                                                    "         Protocol: 5-6\n"
                                                    "         Protocol: 5-7\n"
                                                    "         Protocol: tcp\n"
                                                    "            TCP flags: \n"
                                                    "         Protocol: 6-7\n" ) );
   EXPECT_THAT( reply( *cpu(), 2 ),
                HasSubstr( "{\"protocolRange\":{\"low\":6,\"high\":6},\"tcpFlags\":[]},"
                           "{\"protocolRange\":{\"low\":6,\"high\":7}}]}}]" ) );
   auto const granularity = create< TrafficPolicy::TrafficPolicyIntfParamStatus >();
   granularity->ingressCounterGranularityIs( TrafficPolicy::CounterGranularity{ 3 } );
   auto const show =
      showTrafficPolicyInterfaceFactory( config, status, store, "none", false, false, false, true,
                                         false, create< PolicyMap::IntfConfig >(), granularity );
   EXPECT_EQ( reply( *show ), "" );
   EXPECT_EQ( reply( *show, 2 ), "{\"trafficPolicies\":{}}\n" );
}

// A show object whose steps can be watched and disturbed.
class WatchedShow : public ShowTrafficPolicyCpu {
   VORN_RECORD( WatchedShow )

   using ShowTrafficPolicyCpu::ShowTrafficPolicyCpu;

   void renderTrafficPolicy( unsigned fd, unsigned format, unsigned revision ) override {
      calls.push_back( "revision " + std::to_string( revision ) );
      ShowTrafficPolicyCpu::renderTrafficPolicy( fd, format, revision );
   }
   void cachePolicyState( Vorn::String name ) override {
      calls.emplace_back( name.view() );
      ShowTrafficPolicyCpu::cachePolicyState( name );
      if ( disturb ) {
         disturb( name );
      }
   }

   std::vector< std::string > calls;
   std::function< void( Vorn::String const & ) > disturb;
};

TEST_F( ShowTest, CountersReplaceThePolicyView ) {
   for ( bool const errors : { false, true } ) {
      auto const show = cpu< WatchedShow >( errors, true, true );
      EXPECT_EQ( reply( *show ), "Traffic policy P\n" );
      EXPECT_THAT( show->calls, ElementsAre( "P" ) );
      EXPECT_EQ( show->policyState().size(), 1u );
   }
   auto const show = cpu< WatchedShow >();
   reply( *show );
   EXPECT_THAT( show->calls, ElementsAre( "P", "revision 7" ) );
}

TEST_F( ShowTest, StatusMayChangeWhileItIsCached ) {
   status->policyMapStatusIs( "T", create< PolicyMap::PolicyMapStatus >( "T" ) );
   auto const show = cpu< WatchedShow >();
   show->disturb = [&]( Vorn::String const & name ) {
      status->policyMapStatusDel( name );
      if ( name == std::string_view( "P" ) ) {
         for ( char const * added : { "A", "S" } ) {
            status->policyMapStatusIs( added, create< PolicyMap::PolicyMapStatus >( added ) );
         }
      }
   };
   show->cachePoliciesState();
   EXPECT_THAT( show->calls, ElementsAre( "P", "S", "T" ) );
}

TEST_F( ShowTest, InterruptWhileCachingWritesOneLine ) {
   addRule( "R" );
   auto const show = cpu< WatchedShow >();
   unsigned const served = wendo::interrupt::served();
   wendo::interrupt::request();
   testing::internal::CaptureStdout();
   EXPECT_EQ( reply( *show ), "" );
   EXPECT_EQ( testing::internal::GetCapturedStdout(), "exiting on interrupt\n" );
   EXPECT_EQ( wendo::interrupt::served(), served + 1 );
   EXPECT_THAT( show->calls, testing::IsEmpty() );
   EXPECT_THAT( reply( *cpu() ), testing::StartsWith( "Traffic policy P\n" ) );
}

TEST_F( ShowTest, ErrorsOfTheDescriptorReachTheCaller ) {
   int const full = ::open( "/dev/full", O_WRONLY );
   for ( unsigned const format : { 1u, 2u } ) {
      for ( bool const counters : { false, true } ) {
         EXPECT_THROW(
            cpu( false, false, counters )->render( static_cast< unsigned >( full ), format, 1 ),
            std::system_error );
      }
   }
   ::close( full );
}

Ptr< PolicyMap::PacketDataStatus > counterWith( uint64_t id, uint64_t count ) {
   auto const counter = create< PolicyMap::PacketDataStatus >( "c" );
   counter->uniqueIdIs( Umbo::UniqueId( id ) );
   counter->totalIs( { count, count } );
   for ( char const * name : { "Et1", "Et2" } ) {
      Pelx::IntfId const intf( name );
      auto const data = create< PolicyMap::IntfCountData >( intf, Umbo::UniqueId( id ) );
      data->countDataIs( { count, count } );
      counter->intfCountDataIs( intf, data );
   }
   return counter;
}

TEST_F( ShowDeathTest, CountsAreOfInterfacesThatTheCounterHas ) {
   auto const counter = counterWith( 1, 9 );
   Pelx::IntfId const other( "Et3" );
   EXPECT_EQ( getRulePacketCount( addRule( "R" ), nullptr, "P" ), 0u );
   EXPECT_EQ( getNamedByteCount( nullptr, counter, "P" ), 9u );
   EXPECT_EQ( getInterfacePacketCount( nullptr, counter, "P", Pelx::IntfId( "Et2" ) ), 9u );
   EXPECT_DEATH( getInterfacePacketCount( store, counter, "P", other ), "Assertion" );
   EXPECT_DEATH( getInterfaceByteCount( store, counter, "P", other ), "Assertion" );
}

TEST_F( ShowTest, ClearKeepsSnapshotsOfTheSameCounter ) {
   TrafficPolicy::NamedCounterKey const key{ { "P", "c" } };
   auto const clear = [&]( Ptr< PolicyMap::PacketDataStatus > const & counter, bool perInterface ) {
      policyStatus->counterStatusIs( "c", counter );
      status->perIntfCountingIs( perInterface );
      trafficPolicyCounterFactory( status, store )->clearCounter();
      return store->namedSnapshot( key );
   };
   // Held, so that no later entity stands at the same address.
   Ptr< TrafficPolicy::NamedCounterVersion const > const first(
      clear( counterWith( 1, 10 ), true ) );
   Ptr< PolicyMap::IntfCountData const > const data( first->perIntfCount( Pelx::IntfId( "Et1" ) ) );
   EXPECT_GT( store->timestamp(), 1.7e9 );
   EXPECT_EQ( clear( counterWith( 1, 20 ), true ), first.get() );
   EXPECT_EQ( first->perIntfCount( Pelx::IntfId( "Et1" ) ), data.get() );
   EXPECT_EQ( data->countData().packets, 20u );

   // Without counting per interface the entries stay as they are, but for interfaces that are gone.
   auto const shrunk = counterWith( 1, 30 );
   shrunk->intfCountDataDel( Pelx::IntfId( "Et2" ) );
   EXPECT_EQ( clear( shrunk, false ), first.get() );
   EXPECT_EQ( first->totalCount().bytes, 30u );
   EXPECT_EQ( data->countData().packets, 20u );
   EXPECT_EQ( first->perIntfCount().size(), 1u );

   Ptr< TrafficPolicy::NamedCounterVersion const > const next(
      clear( counterWith( 2, 5 ), false ) );
   EXPECT_NE( next, first );
   EXPECT_EQ( next->uniqueId(), Umbo::UniqueId( 2 ) );
   EXPECT_TRUE( next->perIntfCount().empty() );

   addRule( "R" );
   clear( counterWith( 2, 5 ), true );
   EXPECT_EQ( store->snapshot().size(), 1u );
   policyStatus->cmapDel( "R" );
   addRule( "S" );
   clear( counterWith( 2, 5 ), true );
   EXPECT_EQ( store->snapshot().size(), 1u );
   EXPECT_TRUE( store->snapshot( { { "P", "S" } } ) );
   status->policyMapStatusDelAll();
   trafficPolicyCounterFactory( status, store )->clearCounter();
   EXPECT_TRUE( store->snapshot().empty() );
   EXPECT_TRUE( store->namedSnapshot().empty() );
}

} // namespace
