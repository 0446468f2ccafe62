// Strings, counted pointers, creation, the order of virtual functions, and the trace facility.

#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"
#include "TrafficPolicy/platform/values/VrfName.h"
#include "TrafficPolicy/platform/vorn/Trace.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <bit>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Vorn::Ptr;
using Vorn::String;

TEST( String, BehavesAsItsText ) {
   std::mt19937 random( 3 );
   std::vector< std::string > texts = {
      "",     "a",   std::string( "a\0b", 3 ), std::string( 1, '\0' ), std::string( 100'000, 'x' ),
      "\xff", "\x7f"
   };
   for ( int i = 0; i < 60; ++i ) {
      std::string text( random() % 20, ' ' );
      std::generate( text.begin(), text.end(), [&] { return "\0ab\xff"[random() % 4]; } );
      texts.push_back( text );
   }
   for ( std::string const & a : texts ) {
      String const string( a );
      EXPECT_EQ( string.view(), a );
      EXPECT_EQ( string.hash(), String::hashOf( a ) );
      EXPECT_EQ( string.empty(), a.empty() );
      for ( std::string const & b : texts ) {
         EXPECT_EQ( string == String( b ), a == b );
         EXPECT_EQ( string == std::string_view( b ), a == b );
         EXPECT_EQ( string < String( b ), a < b );
      }
   }
}

// Names that differ where a weak hash would not see it: in one byte anywhere, in words that change
// places, by the same amount in two words.
TEST( String, HashesOfSimilarTextsDiffer ) {
   std::set< uint32_t > hashes;
   std::set< std::string > texts;
   for ( size_t const size : { 3u, 8u, 13u, 64u, 65u, 150u } ) {
      for ( size_t at = 0; at < size; ++at ) {
         for ( char const byte : { '\0', '\1', '\x80', '0', '\xff' } ) {
            std::string text( size, ' ' );
            text[at] = byte;
            texts.insert( text );
            text[( at + 4 ) % size] = byte;
            texts.insert( text );
         }
      }
   }
   for ( std::string const & text : texts ) {
      hashes.insert( String::hashOf( text ) );
   }
   // Among some 3,000 random numbers of 32 bits two are equal once in a thousand runs.
   EXPECT_GE( hashes.size() + 3, texts.size() );
   EXPECT_GT( texts.size(), 1000u );
}

TEST( String, KnowsWhetherItIsPlain ) {
   for ( size_t size = 1; size <= 9; ++size ) {
      for ( size_t at = 0; at < size; ++at ) {
         for ( int byte = 0; byte < 256; ++byte ) {
            std::string text( size, '~' );
            text[at] = static_cast< char >( byte );
            bool const plain = byte >= 0x20 && byte < 0x80 && byte != '"' && byte != '\\';
            ASSERT_EQ( String( text ).plain(), plain ) << size << ' ' << at << ' ' << byte;
         }
      }
   }
}

TEST( String, SharesItsText ) {
   String first( "shared" );
   String second = first;
   EXPECT_TRUE( first.same( second ) );
   EXPECT_FALSE( first.same( String( "shared" ) ) );
   first = String( "other" );
   EXPECT_EQ( second.view(), "shared" );
   String const moved = std::move( second );
   second = moved;
   second = *&second;
   EXPECT_TRUE( second.same( moved ) );
}

TEST( VrfName, IsBounded ) {
   EXPECT_EQ( L3::VrfName( String( std::string( 100, 'v' ) ) ).string().size(), 100u );
   try {
      L3::VrfName const name( String( std::string( 101, 'v' ) ) );
      ADD_FAILURE() << "accepted " << name;
   } catch ( std::length_error const & error ) {
      EXPECT_STREQ( error.what(), "VrfName::value::bytes > VrfName::maxLength not allowed" );
   }
}

class Animal : public Vorn::PtrInterface {
   VORN_RECORD( Animal )

   explicit Animal( bool fails = false ) {
      if ( fails ) {
         throw std::runtime_error( "no such animal" );
      }
   }
};

class Cat : public Animal {
   VORN_RECORD( Cat )

   explicit Cat( int & alive )
      : alive_( alive ) {
      ++alive_;
   }
   ~Cat() override { --alive_; }

private:
   int & alive_;
};

TEST( Ptr, CountsReferences ) {
   int alive = 0;
   Ptr< Cat > const cat = Vorn::create< Cat >( alive );
   EXPECT_TRUE( cat->hasNotificationActive() );
   EXPECT_EQ( cat->references(), 1u );
   {
      Ptr< Animal const > animal = cat;
      Ptr< Animal const > const another = animal;
      EXPECT_EQ( cat->references(), 3u );
      Ptr< Animal const > const moved = std::move( animal );
      EXPECT_EQ( moved, another );
      EXPECT_EQ( animal, nullptr );
      animal = moved;
      animal = *&animal;
      EXPECT_EQ( cat->references(), 4u );
      EXPECT_EQ( &animal->type(), &Cat::typeRecord() );
   }
   EXPECT_EQ( cat->references(), 1u );
   Ptr< Animal const > last = Vorn::create< Cat >( alive );
   EXPECT_EQ( alive, 2 );
   EXPECT_EQ( Cat::typeRecord().objects(), 2u );
   EXPECT_EQ( Cat::typeRecord().bytes(), 2 * sizeof( Cat ) );
   last = nullptr;
   EXPECT_EQ( alive, 1 );
   EXPECT_EQ( Cat::typeRecord().objects(), 1u );
   EXPECT_EQ( Animal::typeRecord().objects(), 0u );
}

TEST( Ptr, CreationThatThrowsLeavesNothing ) {
   EXPECT_THROW( Vorn::create< Animal >( true ), std::runtime_error );
   EXPECT_EQ( Animal::typeRecord().objects(), 0u );
   EXPECT_EQ( Animal::typeRecord().bytes(), 0u );
}

TEST( Ptr, CountsAtomicallyWhenAskedTo ) {
   Vorn::threadSafePointers = true;
   auto const animal = Vorn::create< Animal >();
   String const name( "shared" );
   std::vector< std::thread > threads;
   for ( int i = 0; i < 4; ++i ) {
      threads.emplace_back( [&] {
         for ( int n = 0; n < 100'000; ++n ) {
            Ptr< Animal const > const reference = animal;
            String const copy = name;
            auto const own = n % 16 ? nullptr : Vorn::create< Animal >();
         }
      } );
   }
   for ( std::thread & thread : threads ) {
      thread.join();
   }
   Vorn::threadSafePointers = false;
   EXPECT_EQ( animal->references(), 1u );
   EXPECT_EQ( Animal::typeRecord().objects(), 1u );
}

// The slot of a virtual function in the table of its class, as the platform's C++ ABI keeps it in
// the value of a member pointer.
template< typename Function >
ptrdiff_t slot( Function function ) {
   auto const words = std::bit_cast< std::array< ptrdiff_t, 2 > >( function );
   return words[0] % 2 ? words[0] / static_cast< ptrdiff_t >( sizeof( void * ) ) : -1;
}

TEST( VirtualFunctions, StandInTheOrderOfTheContract ) {
   using Base = Vorn::PtrInterface;
   using Show = TrafficPolicyCli::ShowTrafficPolicyBase;
   EXPECT_THAT( ( std::vector{ slot( &Base::notifieeList ), slot( &Base::hasNotificationActiveIs ),
                               slot( &Base::zeroReferencesIs ), slot( &Base::type ) } ),
                testing::ElementsAre( 0, 1, 2, 3 ) );
   // Two slots are the destructor's.
   EXPECT_THAT(
      ( std::vector{ slot( &Show::renderTrafficPolicy ), slot( &Show::renderCountPerInterface ),
                     slot( &Show::cachePoliciesState ), slot( &Show::cachePolicyState ),
                     slot( &Show::cacheIntfStatus ), slot( &Show::cacheInstalledState ),
                     slot( &Show::cacheInstallError ), slot( &Show::getOrCreatePolicyState ) } ),
      testing::ElementsAre( 6, 7, 8, 9, 10, 11, 12, 13 ) );
}

std::vector< std::string > messages;

void remember( Vorn::TraceFacility const & facility, int level, std::string_view function,
               std::string_view text ) {
   messages.push_back( std::string( facility.name() ) + ' ' + std::to_string( level ) + ' '
                       + std::string( function ) + ": " + std::string( text ) );
}

struct Unprinted {};
std::ostream & operator<<( std::ostream & out, Unprinted ) {
   ADD_FAILURE() << "formatted for a level that is off";
   return out;
}

void traceSomething( Vorn::TraceFacility const & facility ) {
   facility.write( 8, "eight ", String( "text" ), ", ", 8u );
   facility.write( 31, "" );
   facility.write( 7, "seven ", Unprinted() );
   facility.write( 0, { "zero", "elsewhere" } );
}

TEST( Trace, WritesTheLevelsThatAreOn ) {
   Vorn::TraceFacility facility( "Test", Vorn::TraceFacility::toStandardError );
   testing::internal::CaptureStderr();
   facility.write( 1, "off" );
   facility.levelMaskIs( 1u << 1 );
   facility.write( 1, "on", '!' );
   EXPECT_EQ( testing::internal::GetCapturedStderr(), "Test 1 TestBody: on!\n" );
   facility.sinkIs( remember );
   facility.levelMaskIs( 1u << 31 | 1u << 8 | 1u );
   traceSomething( facility );
   EXPECT_THAT( messages,
                testing::ElementsAre( "Test 8 traceSomething: eight text, 8",
                                      "Test 31 traceSomething: ", "Test 0 elsewhere: zero" ) );
}

} // namespace
