// Threads: with objects of their own they need nothing, with shared ones the switch.

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "TrafficPolicy/platform/vorn/Threading.h"
#include "tests/Support.h"

#include <array>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

using PolicyMap::ClassMapMatchOption;
using Vorn::create;
using Vorn::Ptr;

constexpr unsigned rules = 300;

// A policy of many rules with all that a show reads of it.
struct Records {
   Ptr< TrafficPolicy::TrafficPolicyConfig > config =
      create< TrafficPolicy::TrafficPolicyConfig >();
   Ptr< TrafficPolicy::Status > status = create< TrafficPolicy::Status >();

   Records() {
      auto const policy = create< PolicyMap::PolicyMapSubConfig >( "P" );
      auto const policyConfig = create< PolicyMap::PolicyMapConfig >();
      auto const policyStatus = create< PolicyMap::PolicyMapStatus >( "P" );
      config->policyMapConfigIs( "P", policyConfig );
      policyConfig->currCfgIs( policy );
      status->policyMapStatusIs( "P", policyStatus );
      for ( unsigned i = 0; i < rules; ++i ) {
         Vorn::String const name( "rule " + std::to_string( i ) );
         policy->classSequenceIs( i, name );
         auto const filter = create< Classification::StructuredFilter >();
         filter->sourcesIs( Pelx::IpGenPrefix( Pelx::Ip4Prefix{ i << 8, 24 } ) );
         auto const match = create< PolicyMap::ClassMapMatch >( ClassMapMatchOption::ipv4 );
         match->structuredFilterIs( filter );
         auto const rule = create< PolicyMap::ClassMapSubConfig >();
         rule->matchIs( ClassMapMatchOption::ipv4, match );
         policy->rawClassMapIs( name, rule );
         auto const actions = create< PolicyMap::ClassAction >();
         actions->policyActionIs( PolicyMap::ActionType::count,
                                  create< PolicyMap::CountAction >( Vorn::String() ) );
         policy->classActionIs( name, actions );
         auto const ruleStatus = create< PolicyMap::ClassMapStatus >( name );
         ruleStatus->matchIs( ClassMapMatchOption::ipv4 );
         ruleStatus->packetCountIs( i );
         policyStatus->cmapIs( name, ruleStatus );
      }
   }

   // Every rule, as text and as JSON, after a clear.
   std::string replies() const {
      auto const own = create< TrafficPolicy::Counter >();
      TrafficPolicyCli::trafficPolicyCounterFactory( status, own )->clearCounter();
      auto const show = TrafficPolicyCli::showTrafficPolicyInterfaceFactory(
         config, status, own, "", false, false, true, false, false,
         create< PolicyMap::IntfConfig >(), nullptr );
      return test::reply( *show, 1 ) + test::reply( *show, 2 );
   }
};

void inFourThreads( std::function< void( unsigned thread ) > const & work ) {
   std::vector< std::thread > threads;
   for ( unsigned thread = 0; thread < 4; ++thread ) {
      threads.emplace_back( work, thread );
   }
   for ( std::thread & thread : threads ) {
      thread.join();
   }
}

TEST( Threads, WithObjectsOfTheirOwn ) {
   std::string const wanted = Records().replies();
   size_t const objects = PolicyMap::ClassMapStatus::typeRecord().objects();
   std::array< Records, 4 > left; // made by one thread, changed by the next, destroyed by another
   for ( unsigned round = 0; round < 5; ++round ) {
      inFourThreads( [&]( unsigned thread ) {
         for ( unsigned i = 0; i < 3; ++i ) {
            EXPECT_EQ( left[thread].replies(), wanted );
            left[thread] = Records();
         }
      } );
      std::swap( left[0], left[round % 3 + 1] );
      EXPECT_EQ( PolicyMap::ClassMapStatus::typeRecord().objects(), objects + 4 * rules );
   }
}

TEST( Threads, WithSharedRecords ) {
   Records const records;
   std::string const wanted = records.replies();
   Vorn::threadSafePointers = true;
   inFourThreads( [&]( unsigned ) {
      for ( unsigned i = 0; i < 5; ++i ) {
         EXPECT_EQ( records.replies(), wanted );
      }
   } );
   Vorn::threadSafePointers = false;
   EXPECT_EQ( records.config->references(), 1u );
}

// Of a thread that ends, the blocks go to the next one.
#ifndef __SANITIZE_ADDRESS__ // which has no blocks of ours
TEST( Threads, LeaveTheirMemory ) {
   auto const place = [] {
      void * result = nullptr;
      std::thread( [&] {
         result = Vorn::Pool::allocate( 48 );
         Vorn::Pool::release( result, 48 );
      } ).join();
      return result;
   };
   void * const first = place();
   EXPECT_EQ( place(), first );
}
#endif

} // namespace
