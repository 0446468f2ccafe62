// Numbers in decimal, two digits at a time from a table, without a library division on 32-bit CPUs.
//
// The number of digits varies, so that a branch on it is often mispredicted. Up to four digits are
// made in a word, leading zeros included; the word is shifted by the number of zeros and stored
// whole.

#pragma once

#include <array>
#include <bit>
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

inline constexpr bool firstIsLow = std::endian::native == std::endian::little;

// All four digits of a value below 10'000, in memory order.
inline uint32_t fourDigits( uint32_t value ) {
   uint16_t first = 0;
   uint16_t second = 0;
   std::memcpy( &first, pairs.data() + size_t{ 2 } * ( value / 100 ), 2 );
   std::memcpy( &second, pairs.data() + size_t{ 2 } * ( value % 100 ), 2 );
   return firstIsLow ? uint32_t{ second } << 16 | first : uint32_t{ first } << 16 | second;
}

// The digits of a value below 10'000, without leading zeros. Returns the end; writes four bytes.
inline char * putSmall( char * to, uint32_t value ) {
   unsigned const zeros = ( value < 1000 ) + ( value < 100 ) + ( value < 10 );
   uint32_t const digits = fourDigits( value );
   uint32_t const word = firstIsLow ? digits >> 8 * zeros : digits << 8 * zeros;
   std::memcpy( to, &word, 4 );
   return to + 4 - zeros;
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

// The digits of a value of at least 100'000'000. Returns the end.
char * putLarge( char * to, uint64_t value );

// Writes the value without a terminator and returns its end. The buffer holds at least digitsMax
// bytes: up to three bytes after a short number are overwritten.
inline char * put( char * to, uint32_t value ) {
   if ( value < 10'000 ) {
      return putSmall( to, value );
   }
   if ( value >= 100'000'000 ) {
      return putLarge( to, value );
   }
   to = putSmall( to, value / 10'000 );
   putPair( to, value % 10'000 / 100 );
   putPair( to + 2, value % 100 );
   return to + 4;
}

inline char * put( char * to, uint64_t value ) {
   return value >> 32 ? putLarge( to, value ) : put( to, static_cast< uint32_t >( value ) );
}

} // namespace Decimal
