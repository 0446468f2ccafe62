// The hashes of keys.
//
// They depend on secret numbers that each process draws anew, so that nobody can choose names or
// addresses that collide: with any two keys the chance is about that of two random numbers. Nothing
// that is shown depends on them, since collections iterate in insertion order.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/Ptr.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace Vorn {

// The secret numbers: for words in pairs as NH has it (RFC 4418, section 5.2.1), and for a sum or a
// single word by multiply and shift.
struct HashKeys {
   static constexpr size_t chunk = 16; // words that are hashed in one go

   std::array< uint32_t, chunk + 2 > words; // the last two are for the sum of the chunk before
   uint64_t low;
   uint64_t high;
   uint64_t constant;
   uint64_t size;
};
TRAFFIC_POLICY_API extern HashKeys const hashKeys;

// A sum of NH as a hash.
inline uint32_t hashOfSum( uint64_t sum ) {
   uint64_t const product = uint64_t{ static_cast< uint32_t >( sum ) } * hashKeys.low
                            + ( sum >> 32 ) * hashKeys.high + hashKeys.constant;
   return static_cast< uint32_t >( product >> 32 );
}

inline uint32_t hashOfWord( uint32_t word ) {
   return static_cast< uint32_t >( ( word * hashKeys.low + hashKeys.constant ) >> 32 );
}

// The summand of a pair of words, under the keys of its place.
inline uint64_t hashPair( uint32_t const * keys, uint32_t a, uint32_t b ) {
   return uint64_t{ a + keys[0] } * ( b + keys[1] );
}

template< size_t count >
uint32_t hashOfWords( std::array< uint32_t, count > const & words ) {
   static_assert( count % 2 == 0 && count <= HashKeys::chunk );
   uint64_t sum = 0;
   for ( size_t i = 0; i < count; i += 2 ) {
      sum += hashPair( hashKeys.words.data() + i, words[i], words[i + 1] );
   }
   return hashOfSum( sum );
}

// Keys that know their hash.
template< typename Key >
   requires requires( Key const & key ) {
      { key.hash() } -> std::convertible_to< uint32_t >;
   }
uint32_t hashOf( Key const & key ) {
   return key.hash();
}

template< typename Key >
   requires std::is_enum_v< Key > || std::integral< Key > uint32_t hashOf( Key key ) {
      return hashOfWord( static_cast< uint32_t >( key ) );
   }

// Entities are hashed by identity.
template< typename T >
uint32_t hashOf( Ptr< T > const & entity ) {
   return hashOfWord(
      static_cast< uint32_t >( reinterpret_cast< uintptr_t >( entity.get() ) >> 3 ) );
}

} // namespace Vorn
