// The collections under every attribute, against the standard library's as models.

#include "TrafficPolicy/model/PolicyStateCpu.h"
#include "TrafficPolicy/platform/vorn/HashMap.h"
#include "TrafficPolicy/platform/vorn/IndexedArray.h"
#include "TrafficPolicy/platform/vorn/OrderedMap.h"
#include "TrafficPolicy/platform/vorn/SortedArray.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using PolicyMap::ClassMapMatchOption;
using testing::ElementsAre;
using testing::Pair;

class Random {
public:
   explicit Random( unsigned seed )
      : engine_( seed ) {}
   unsigned operator()() { return static_cast< unsigned >( engine_() ); }

private:
   std::mt19937 engine_;
};

// A key whose hashes collide, and are all ones for some.
struct BadKey {
   unsigned value = 0;
   uint32_t hash() const { return value % 3 == 0 ? ~0u : value % 3; }
   friend bool operator==( BadKey const &, BadKey const & ) = default;
};

template< typename Key >
Key keyOf( unsigned number ) {
   if constexpr ( std::is_same_v< Key, Vorn::String > ) {
      return Key( "key " + std::to_string( number ) );
   } else {
      return Key{ number };
   }
}

// A hashed map and what it should hold: values by key number, and the numbers in insertion order.
template< typename Key >
class Checked {
public:
   // One random operation on keys below the limit.
   void step( Random & random, unsigned limit ) {
      unsigned const number = random() % limit;
      Key const key = keyOf< Key >( number );
      bool const present = values_.contains( number );
      switch ( random() % 8 ) {
      case 0:
      case 1:
         EXPECT_EQ( map_.erase( key ), present );
         forget( number );
         break;
      case 2:
         if ( auto const at = map_.find( key ); at != map_.end() ) {
            map_.erase( at );
         }
         forget( number );
         break;
      default:
         EXPECT_EQ( map_.set( key, Vorn::String( std::to_string( ++count_ ) ) ), !present );
         values_[number] = std::to_string( count_ );
         if ( !present ) {
            order_.push_back( number );
         }
      }
      rarely( random() % 3000, limit );
   }
   // The whole contents, in order; each key by lookup, by cursor, and keys that are not there.
   void check( Random & random, unsigned limit ) const {
      std::vector< std::pair< Key, std::string > > found;
      for ( auto const & [key, value] : map_ ) {
         found.emplace_back( key, value.view() );
      }
      std::vector< std::pair< Key, std::string > > expected;
      for ( unsigned const number : order_ ) {
         expected.emplace_back( keyOf< Key >( number ), values_.at( number ) );
      }
      ASSERT_EQ( found, expected );
      ASSERT_EQ( map_.size(), expected.size() );
      typename Vorn::HashMap< Key, Vorn::String >::Cursor cursor( map_ );
      for ( size_t i = 0; i < 2 * order_.size(); ++i ) {
         // In order at first, then anywhere, with keys that are absent in between.
         unsigned const number = i < order_.size() ? order_[i] : random() % limit;
         auto const at = values_.find( number );
         Vorn::String const * value = cursor.find( keyOf< Key >( number ) );
         ASSERT_EQ( value, map_.lookup( keyOf< Key >( number ) ) );
         ASSERT_EQ( value != nullptr, at != values_.end() );
         ASSERT_TRUE( !value || *value == std::string_view( at->second ) );
      }
   }

private:
   void forget( unsigned number ) {
      values_.erase( number );
      std::erase( order_, number );
   }
   void rarely( unsigned choice, unsigned limit ) {
      if ( choice == 0 ) {
         map_.clear();
         values_.clear();
         order_.clear();
      } else if ( choice < 4 ) {
         map_.reserve( limit );
      } else if ( choice < 8 ) {
         Vorn::HashMap< Key, Vorn::String > moved( std::move( map_ ) );
         map_ = std::move( moved );
      }
   }

   Vorn::HashMap< Key, Vorn::String > map_;
   std::unordered_map< unsigned, std::string > values_;
   std::vector< unsigned > order_;
   unsigned count_ = 0;
};

template< typename Key >
class HashMapTest : public testing::Test {};
using Keys = testing::Types< Vorn::String, BadKey >;
TYPED_TEST_SUITE( HashMapTest, Keys );

TYPED_TEST( HashMapTest, RandomOperations ) {
   Random random( 1 );
   for ( unsigned const limit : { 4u, 11u, 60u, 700u } ) {
      Checked< TypeParam > checked;
      for ( unsigned step = 0; step < 6000; ++step ) {
         checked.step( random, limit );
         if ( step % limit == 0 ) {
            checked.check( random, limit + 5 );
            ASSERT_FALSE( this->HasFatalFailure() ) << "keys " << limit << ", step " << step;
         }
      }
   }
}

TEST( HashSet, KeepsOrderAndRefusesWhatIsThere ) {
   Vorn::HashSet< unsigned > set;
   std::vector< bool > fresh;
   for ( unsigned const key : { 5u, 3u, 9u, 3u, 5u, 1u } ) {
      fresh.push_back( set.insert( key ) );
   }
   EXPECT_THAT( fresh, ElementsAre( true, true, true, false, false, true ) );
   EXPECT_TRUE( set.erase( 3u ) );
   EXPECT_FALSE( set.erase( 3u ) );
   set.insert( 3 );
   EXPECT_THAT( std::vector( set.begin(), set.end() ), ElementsAre( 5, 9, 1, 3 ) );
}

// An ended or stale iterator stops the process; insertion leaves iterators alone.
template< typename Collection, typename Insert >
void checkIterators( Insert const & insert, unsigned entries ) {
   Collection collection;
   EXPECT_DEATH( *collection.begin(), "Assertion `iter_' failed" );
   for ( unsigned key = 0; key < entries; ++key ) {
      insert( collection, key );
   }
   auto const begin = collection.begin();
   auto ended = collection.end();
   EXPECT_DEATH( *ended, "Assertion `iter_' failed" );
   EXPECT_DEATH( ++ended, "Assertion `iter_' failed" );
   EXPECT_DEATH( collection.erase( ended ), "Assertion `iter_' failed" );
   for ( unsigned key = entries; key < entries * 20; ++key ) {
      insert( collection, key );
   }
   EXPECT_EQ( std::distance( begin, collection.end() ), entries * 20 );
   collection.erase( collection.find( entries - 1 ) );
   auto stale = begin;
   EXPECT_DEATH( *stale, "Assertion `iter_' failed" );
   EXPECT_DEATH( ++stale, "Assertion `iter_' failed" );
   auto const last = collection.begin();
   collection.clear();
   insert( collection, 1 );
   EXPECT_DEATH( *last, "Assertion `iter_' failed" );
}

TEST( IteratorsDeathTest, AreChecked ) {
   auto const set = []( auto & map, unsigned key ) { map.set( key, key ); };
   for ( unsigned const entries : { 2u, 30u } ) {
      checkIterators< Vorn::HashMap< unsigned, unsigned > >( set, entries );
   }
   checkIterators< Vorn::OrderedMap< unsigned, unsigned > >( set, 3 );
   // Entries move when the room of a deleted one is given back.
   Vorn::HashMap< unsigned, unsigned > map;
   map.reserve( 30 );
   for ( unsigned key = 0; key < 30; ++key ) {
      map.set( key, key );
   }
   map.erase( 0u );
   auto const moved = map.begin();
   map.set( 30, 30 );
   EXPECT_DEATH( *moved, "Assertion `iter_' failed" );
}

// An iterator erases from its own collection only.
TEST( IteratorsDeathTest, OfAnotherCollectionAreRefused ) {
   Vorn::HashMap< unsigned, unsigned > maps[2];
   Vorn::OrderedMap< unsigned, unsigned > trees[2];
   Vorn::IndexedArray< int > arrays[2];
   for ( unsigned i = 0; i < 2; ++i ) {
      maps[i].set( 1, 1 );
      trees[i].set( 1, 1 );
      arrays[i].set( 0, 1 );
   }
   EXPECT_DEATH( maps[0].erase( maps[1].begin() ), "Assertion `iter_' failed" );
   EXPECT_DEATH( trees[0].erase( trees[1].begin() ), "Assertion `iter_' failed" );
   EXPECT_DEATH( arrays[0].erase( arrays[1].begin() ), "Assertion `iter_' failed" );
   auto const stale = arrays[0].begin();
   arrays[0].clear();
   arrays[0].set( 0, 1 );
   EXPECT_DEATH( *stale, "Assertion `iter_' failed" );
   EXPECT_DEATH( arrays[0].erase( stale ), "Assertion `iter_' failed" );
}

// What is inserted may stand in the collection itself, also when that grows.
TEST( Collections, TakeValuesOfTheirOwn ) {
   Vorn::String const text = "a text";
   Vorn::IndexedArray< Vorn::Ptr< Vorn::PtrInterface const > > array;
   array.set( 0, TrafficPolicyCli::policyStateFactory( text ) );
   for ( unsigned const index : { 1u, 5000u, 20'000u } ) {
      array.set( index, array.at( 0 ) );
      EXPECT_EQ( array.at( index ), array.at( 0 ) );
   }
   Vorn::HashMap< Vorn::String, Vorn::String > map;
   Vorn::SortedArray< Vorn::String, Vorn::String > sorted;
   Vorn::OrderedMap< Vorn::String, Vorn::String > tree;
   Vorn::HashSet< Vorn::String > set;
   map.set( "0", "1" );
   sorted.set( "0", "1" );
   tree.set( "0", "1" );
   set.insert( "0" );
   for ( unsigned i = 1; i < 100; ++i ) {
      std::string const last = std::to_string( i - 1 );
      std::string const next = std::to_string( i + 1 );
      Vorn::String const & key = *map.lookup( Vorn::String( last ) );
      EXPECT_TRUE( map.set( key, next.c_str() ) );
      EXPECT_TRUE( sorted.set( *sorted.lookup( Vorn::String( last ) ), next.c_str() ) );
      EXPECT_TRUE( tree.set( *tree.lookup( Vorn::String( last ) ), next.c_str() ) );
      EXPECT_EQ( *map.lookup( Vorn::String( std::to_string( i ) ) ), next );
      EXPECT_FALSE( set.insert( *set.begin() ) );
   }
   EXPECT_EQ( map.size(), 100u );
   EXPECT_EQ( sorted.size(), 100u );
   EXPECT_EQ( tree.size(), 100u );
   while ( map ) {
      EXPECT_TRUE( map.erase( map.begin()->key ) );
      EXPECT_TRUE( sorted.erase( sorted.begin()->key ) );
      EXPECT_TRUE( tree.erase( tree.begin()->first ) );
   }
   EXPECT_TRUE( set.erase( *set.begin() ) );
   EXPECT_EQ( text == "a text", true );
}

TEST( OrderedCollections, RandomOperations ) {
   Random random( 2 );
   Vorn::OrderedMap< unsigned, unsigned > tree;
   Vorn::SortedArray< unsigned, unsigned > array;
   std::map< unsigned, unsigned > model;
   for ( unsigned step = 0; step < 4000; ++step ) {
      // Ascending at first, as rules come, then in any order.
      unsigned const key = step < 200 ? step : random() % 300;
      if ( random() % 3 == 0 ) {
         bool const present = model.erase( key ) != 0;
         ASSERT_EQ( tree.erase( key ), present );
         ASSERT_EQ( array.erase( key ), present );
      } else {
         bool const fresh = model.insert_or_assign( key, step ).second;
         ASSERT_EQ( tree.set( key, step ), fresh );
         ASSERT_EQ( array.set( key, step ), fresh );
      }
      auto const at = model.find( key );
      for ( unsigned const * value :
            { std::as_const( tree ).lookup( key ), array.lookup( key ) } ) {
         ASSERT_EQ( value != nullptr, at != model.end() );
         ASSERT_TRUE( !value || *value == at->second );
      }
      auto const above = model.upper_bound( key );
      ASSERT_EQ( tree.upperBound( key ) == tree.end(), above == model.end() );
      ASSERT_TRUE( above == model.end() || *tree.upperBound( key ) == *above );
   }
   EXPECT_TRUE( std::equal( tree.begin(), tree.end(), model.begin(), model.end() ) );
   EXPECT_TRUE( std::equal( array.begin(), array.end(), model.begin(), model.end(),
                            []( auto const & entry, auto const & wanted ) {
                               return entry.key == wanted.first && entry.value == wanted.second;
                            } ) );
}

TEST( IndexedArrayDeathTest, GrowsToItsBound ) {
   Vorn::IndexedArray< int > array;
   array.set( 5, 55 );
   EXPECT_EQ( array.size(), 6u );
   EXPECT_EQ( array.at( 4 ), 0 );
   EXPECT_EQ( array.at( 9 ), 0 );
   array.set( 2, 22 );
   EXPECT_THAT( std::vector( array.begin(), array.end() ), ElementsAre( 22, 55 ) );
   EXPECT_EQ( ( ++array.begin() ).index(), 5u );
   array.erase( array.begin() );
   array.erase( 77 );
   EXPECT_THAT( std::vector( array.begin(), array.end() ), ElementsAre( 55 ) );
   EXPECT_DEATH( *array.end(), "Assertion `iter_' failed" );
   EXPECT_DEATH( array.set( 2'003'003, 1 ), "newEntries < 2003004" );
   EXPECT_DEATH( array.set( ~0u, 1 ), "newEntries < 2003004" );
   array.set( 2'003'002, 1 );
   EXPECT_EQ( array.size(), 2'003'003u );
   array.clear();
   EXPECT_TRUE( array.empty() );
}

TEST( Attributes, OfPolicyStates ) {
   auto const state = TrafficPolicyCli::policyStateCpuFactory( "P" );
   auto const applied = state->appliedVrfIs( ClassMapMatchOption::ipv6 );
   applied->vrfListIs( L3::VrfName( "red" ), true );
   EXPECT_EQ( state->appliedVrfIs( ClassMapMatchOption::ipv6 ), applied );
   EXPECT_EQ( applied->matchOption(), ClassMapMatchOption::ipv6 );
   state->failedVrfIs( ClassMapMatchOption::ipv6 )->vrfListIs( L3::VrfName( "red" ), true );
   EXPECT_EQ( applied->vrfList().size(), 1u );
   state->appliedVrfIs( ClassMapMatchOption::ipv4 );
   EXPECT_EQ( state->appliedVrf().begin()->first, ClassMapMatchOption::ipv4 );
   EXPECT_EQ( state->vrfIntfStatus( L3::VrfName( "red" ) ), nullptr );

   EXPECT_TRUE( state->matchOptionListIs( ClassMapMatchOption::mac ) );
   EXPECT_FALSE( state->matchOptionListIs( ClassMapMatchOption::mac ) );
   state->matchOptionListDel( ClassMapMatchOption::ipv4 );
   EXPECT_EQ( state->matchOptionList().size(), 1u );

   state->namedCounterIs( "b", true );
   state->namedCounterIs( "a", true );
   state->namedCounterIs( "b", false );
   EXPECT_THAT( std::vector( state->namedCounter().begin(), state->namedCounter().end() ),
                ElementsAre( Pair( "a", true ), Pair( "b", false ) ) );
   EXPECT_TRUE( state->namedCounterDel( "a" ) );
   EXPECT_FALSE( state->namedCounterDel( "a" ) );
   EXPECT_FALSE( state->namedCounterDel( "b" ) );
   EXPECT_TRUE( state->namedCounter().empty() );

   EXPECT_EQ( state->ruleCountInc( 3 ), 3u );
   EXPECT_EQ( state->ruleCountInc( 0 ), 3u );
   auto const match = Vorn::create< PolicyMap::ClassMapMatch >( ClassMapMatchOption::ipv4 );
   state->classMapConfigIs( 5, match );
   EXPECT_EQ( state->classMapConfig( 5 ), match );
   EXPECT_EQ( state->classMapConfig( 4 ), nullptr );
   EXPECT_EQ( state->classMapConfig( 9 ), nullptr );
   state->classMapConfigDel( 5 );
   EXPECT_EQ( state->classMapConfig( 5 ), nullptr );
   EXPECT_EQ( match->references(), 1u );
}

} // namespace
