// Numbers in decimal, two digits at a time from a table, without a library division on 32-bit CPUs.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Decimal {

// The most digits of a 64-bit number.
inline constexpr size_t digitsMax = 20;

inline constexpr auto pairs = [] {
   std::array< char, 200 > table{};
   for ( size_t i = 0; i < 100; ++i ) {
      table[2 * i] = static_cast< char >( '0' + i / 10 );
      table[2 * i + 1] = static_cast< char >( '0' + i % 10 );
   }
   return table;
}();

inline void putPair( char * to, uint32_t value ) {
   std::memcpy( to, pairs.data() + size_t{ 2 } * value, 2 );
}

// The digits of a value below 10'000, without leading zeros. Returns the end.
inline char * putSmall( char * to, uint32_t value ) {
   if ( value < 100 ) {
      if ( value < 10 ) {
         *to = static_cast< char >( '0' + value );
         return to + 1;
      }
      putPair( to, value );
      return to + 2;
   }
   uint32_t const high = value / 100;
   if ( high < 10 ) {
      *to++ = static_cast< char >( '0' + high );
   } else {
      putPair( to, high );
      to += 2;
   }
   putPair( to, value % 100 );
   return to + 2;
}

// All eight digits of a value below 100'000'000, leading zeros included.
inline char * putEight( char * to, uint32_t value ) {
   uint32_t const high = value / 10'000;
   uint32_t const low = value % 10'000;
   putPair( to, high / 100 );
   putPair( to + 2, high % 100 );
   putPair( to + 4, low / 100 );
   putPair( to + 6, low % 100 );
   return to + 8;
}

// Writes the value without a terminator, at most digitsMax characters, and returns the end.
inline char * put( char * to, uint32_t value ) {
   if ( value < 10'000 ) {
      return putSmall( to, value );
   }
   if ( value < 100'000'000 ) {
      to = putSmall( to, value / 10'000 );
      putPair( to, value % 10'000 / 100 );
      putPair( to + 2, value % 100 );
      return to + 4;
   }
   to = putSmall( to, value / 100'000'000 );
   return putEight( to, value % 100'000'000 );
}

char * putLarge( char * to, uint64_t value );

inline char * put( char * to, uint64_t value ) {
   return value >> 32 ? putLarge( to, value ) : put( to, static_cast< uint32_t >( value ) );
}

} // namespace Decimal
