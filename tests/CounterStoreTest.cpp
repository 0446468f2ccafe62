// Counter stores on disk, and input files of any size and kind.

#include "sources/file/CounterStore.h"

#include "sources/FileError.h"
#include "sources/json/InputFile.h"
#include "tests/Support.h"

#include <gmock/gmock.h>

#include <limits>
#include <thread>
#include <vector>

namespace {

using TrafficPolicy::Counter;
using Vorn::create;
using Vorn::Ptr;
using Vorn::String;

// Names with everything that JSON escapes, and more policies than a reader remembers.
String name( test::Random & random ) {
   static constexpr char const * names[] = {
      "a",
      "b",
      "\"",
      "\\u0041",
      "line\nbreak",
      "\x01\x7f",
      "\u20ac \U0001f600",
      "/~1",
      "{\"a\":[1]}",
      "a name of more than sixty-four bytes, which is copied in another way"
   };
   return random.oneIn( 3 ) ? String( "rule-" + std::to_string( random.below( 200 ) ) )
                            : String( names[random.below( std::size( names ) )] );
}

Umbo::UniqueId id( test::Random & random ) {
   return random.oneIn( 4 ) ? Umbo::UniqueId() : Umbo::UniqueId( random.ofAnySize() );
}

Ptr< Counter > randomStore( test::Random & random ) {
   auto const store = create< Counter >();
   double const times[] = { 0, 1763712345.678901, 5e-324, std::numeric_limits< double >::max() };
   store->timestampIs( times[random.below( 4 )] );
   for ( unsigned left = random.below( 40 ); left > 0; --left ) {
      TrafficPolicy::CounterKey const key{ { name( random ), name( random ) } };
      store->snapshotIs( key, { id( random ), random.ofAnySize() } );
   }
   for ( unsigned left = random.below( 10 ); left > 0; --left ) {
      TrafficPolicy::NamedCounterKey const key{ { name( random ), name( random ) } };
      auto & snapshot = store->namedSnapshotIs( key, id( random ) );
      snapshot.totalCountIs( { random.ofAnySize(), random.ofAnySize() } );
      for ( unsigned interfaces = random.below( 4 ); interfaces > 0; --interfaces ) {
         Pelx::IntfId const intf( random.oneIn( 4 ) ? String() : name( random ) );
         snapshot.perIntfCountIs( intf, id( random ) )
            .countDataIs( { random.ofAnySize(), random.ofAnySize() } );
      }
   }
   return store;
}

// A status that knows some of the store's names, in its order or not.
Ptr< TrafficPolicy::Status > randomStatus( test::Random & random, Counter const & store ) {
   auto const status = create< TrafficPolicy::Status >();
   for ( auto const & [key, snapshot] : store.snapshot() ) {
      auto const * present = status->policyMapStatus( key.policyName );
      auto const policy = create< PolicyMap::PolicyMapStatus >( key.policyName );
      for ( auto const & [rule, ruleStatus] : present ? ( *present )->cmap() : policy->cmap() ) {
         policy->cmapIs( rule, ruleStatus );
      }
      String const rule = random.oneIn( 5 ) ? name( random ) : String( key.name.view() );
      policy->cmapIs( rule, create< PolicyMap::ClassMapStatus >( rule ) );
      status->policyMapStatusIs( key.policyName, policy );
   }
   return status;
}

// All that the store holds, in order.
std::string contents( Counter const & store ) {
   std::ostringstream text;
   text.precision( 17 );
   auto const line = [&]( auto const &... values ) { ( ( text << values << '\0' ), ... ) << '\n'; };
   line( store.timestamp() );
   for ( auto const & [key, snapshot] : store.snapshot() ) {
      line( key.policyName, key.name, snapshot.uniqueId.value(), snapshot.packets );
   }
   for ( auto const & [key, snapshot] : store.namedSnapshot() ) {
      line( snapshot->key().policyName, snapshot->key().name, snapshot->uniqueId().value(),
            snapshot->totalCount().packets, snapshot->totalCount().bytes );
      for ( auto const & [intf, data] : snapshot->perIntfCount() ) {
         line( intf, data->intfId(), data->uniqueId().value(), data->countData().packets,
               data->countData().bytes );
      }
   }
   return text.str();
}

TEST( CounterStore, IsReadAsItWasWritten ) {
   test::Random random( 6 );
   test::TemporaryFolder const folder;
   std::string const path = folder.file( "store" );
   for ( unsigned i = 0; i < 100; ++i ) {
      auto const store = randomStore( random );
      EXPECT_EQ( tpcli::CounterStoreLock( path ).write( *store ), "" );
      std::string const written = test::readFile( path );
      auto const status =
         random.oneIn( 4 ) ? create< TrafficPolicy::Status >() : randomStatus( random, *store );
      auto const read = tpcli::readCounterStore( path, *status );
      ASSERT_EQ( contents( *read ), contents( *store ) ) << written;
      EXPECT_EQ( tpcli::CounterStoreLock( path ).write( *read ), "" );
      ASSERT_EQ( test::readFile( path ), written );
   }
}

TEST( CounterStore, IsEmptyWhereThereIsNoFile ) {
   auto const status = create< TrafficPolicy::Status >();
   std::string const empty = contents( *create< Counter >() );
   test::TemporaryFolder const folder;
   for ( std::string const & path : { std::string(), folder.file( "none" ) } ) {
      EXPECT_EQ( contents( *tpcli::readCounterStore( path, *status ) ), empty );
   }
   // A file in place of a folder is no store that is missing.
   test::writeFile( folder.file( "file" ), "" );
   EXPECT_THROW( tpcli::readCounterStore( folder.file( "file/store" ), *status ),
                 tpcli::FileError );
}

// The file in its windows, each beginning with some of what the one before ended with.
std::string windows( std::string const & name, test::Random & random ) {
   tpcli::InputFile file( name, 1 + random.below( 100'000 ) );
   std::string all;
   size_t kept = 0;
   bool more = true;
   while ( more ) {
      more = file.advance( file.end() - kept );
      EXPECT_EQ( std::string( file.end(), file.padding ), std::string( file.padding, '\0' ) );
      EXPECT_EQ( std::string_view( file.begin(), kept ),
                 std::string_view( all ).substr( all.size() - kept ) );
      all.append( file.begin() + kept, file.end() );
      kept = random.below( static_cast< unsigned >( file.end() - file.begin() + 1 ) );
   }
   return all;
}

TEST( InputFile, ComesInWindows ) {
   test::Random random( 7 );
   test::TemporaryFolder const folder;
   std::string const path = folder.file( "input" );
   for ( size_t const size : { 0u, 1u, 65'535u, 300'001u, 3'000'000u } ) {
      std::string text( size, ' ' );
      for ( size_t at = 0; at < size; at += 97 ) {
         text[at] = static_cast< char >( random.below( 256 ) );
      }
      test::writeFile( path, text );
      int ends[2];
      ASSERT_EQ( ::pipe( ends ), 0 );
      std::thread writer( [&] {
         std::string_view left = text;
         while ( !left.empty() ) {
            ssize_t const count =
               ::write( ends[1], left.data(), std::min< size_t >( left.size(), 40'001 ) );
            left.remove_prefix( count > 0 ? static_cast< size_t >( count ) : 0 );
         }
         ::close( ends[1] );
      } );
      for ( std::string const & name : { path, "/dev/fd/" + std::to_string( ends[0] ) } ) {
         EXPECT_TRUE( windows( name, random ) == text ) << name << ", " << size;
      }
      writer.join();
      ::close( ends[0] );
   }
}

} // namespace
