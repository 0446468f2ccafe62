// Numbers and prefixes: every text against the C and C++ libraries'.

#include "TrafficPolicy/platform/values/Decimal.h"
#include "TrafficPolicy/platform/values/IpGenPrefix.h"
#include "tests/Support.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <vector>

namespace {

using Address = std::array< uint8_t, 16 >;

// The text that the function writes into a buffer with this room, and nothing behind the room.
template< typename Function >
std::string printed( size_t room, Function const & print ) {
   std::string buffer( room + 16, '#' );
   char const * const end = print( buffer.data() );
   EXPECT_EQ( buffer.substr( room ), std::string( 16, '#' ) );
   return buffer.substr( 0, static_cast< size_t >( end - buffer.data() ) );
}

template< typename Number >
void checkNumber( Number value ) {
   char wanted[24];
   char * const end = std::to_chars( wanted, std::end( wanted ), value ).ptr;
   ASSERT_EQ( printed( Decimal::digitsMax, [&]( char * to ) { return Decimal::put( to, value ); } ),
              std::string( +wanted, end ) );
}

TEST( Decimal, AgreesWithTheStandardLibrary ) {
   std::vector< uint64_t > values;
   for ( uint64_t small = 0; small < 11'000; ++small ) {
      // Also as the digits behind others, and before others.
      for ( uint64_t const value : { small, small * 10'000 + 7, small * 100'000'000, 90'000 + small,
                                     1'800'000'000 + small } ) {
         values.push_back( value );
      }
   }
   for ( unsigned bit = 0; bit < 64; ++bit ) {
      values.insert( values.end(), { ( uint64_t{ 1 } << bit ) - 1, uint64_t{ 1 } << bit,
                                     ( uint64_t{ 1 } << bit ) + 1, ~uint64_t{ 0 } << bit } );
   }
   for ( uint64_t power = 1; power <= ~uint64_t{ 0 } / 10; power *= 10 ) {
      for ( uint64_t digit = 1; digit < 10; ++digit ) {
         values.insert( values.end(), { power * digit - 1, power * digit, power * digit + 1 } );
      }
   }
   test::Random random( 1 );
   for ( int i = 0; i < 50'000; ++i ) {
      values.push_back( random.ofAnySize() );
   }
   for ( uint64_t const value : values ) {
      checkNumber( value );
      checkNumber( static_cast< uint32_t >( value ) );
      ASSERT_FALSE( testing::Test::HasFailure() ) << value;
   }
}

// A random group of an IPv6 address: zeros in runs, and each number of digits.
unsigned group( test::Random & random ) {
   return random.oneIn( 2 )   ? 0
          : random.oneIn( 4 ) ? 0xffff
                              : random.below( 0x10000 ) >> random.below( 16 );
}

// The C library writes addresses whose first 96 bits are zero in dotted form, which RFC 5952 leaves
// to those with a well-known prefix.
std::string ip6Text( Address const & bytes ) {
   unsigned const upper = unsigned{ bytes[12] } << 8 | bytes[13];
   unsigned const lower = unsigned{ bytes[14] } << 8 | bytes[15];
   char text[INET6_ADDRSTRLEN] = {};
   if ( upper != 0
        && std::all_of( bytes.begin(), bytes.begin() + 12, []( auto b ) { return !b; } ) ) {
      std::snprintf( text, sizeof text, "::%x:%x", upper, lower );
      return text;
   }
   return ::inet_ntop( AF_INET6, bytes.data(), text, sizeof text );
}

void checkPrefix( Pelx::IpGenPrefix const & prefix, std::string const & wanted ) {
   ASSERT_EQ( printed( Pelx::IpGenPrefix::printRoom,
                       [&]( char * to ) { return prefix.printToBuffer( to ); } ),
              wanted );
   ASSERT_LE( wanted.size(), Pelx::IpGenPrefix::textMax );
}

TEST( Prefix, TextsAreThoseOfTheAddresses ) {
   test::Random random( 2 );
   for ( unsigned i = 0; i < 40'000; ++i ) {
      Pelx::Ip6Prefix prefix{ {}, static_cast< uint8_t >( i % 129 ) };
      for ( size_t at = 0; at < 8; ++at ) {
         // At first each choice of zero groups, with one to four digits in the others.
         unsigned const value = i >= 1024     ? group( random )
                                : i >> at & 1 ? 0xabcdu >> ( i / 256 * 4 )
                                              : 0;
         prefix.address.bytes[2 * at] = static_cast< uint8_t >( value >> 8 );
         prefix.address.bytes[2 * at + 1] = static_cast< uint8_t >( value );
      }
      checkPrefix( Pelx::IpGenPrefix( prefix ),
                   ip6Text( prefix.address.bytes ) + '/' + std::to_string( prefix.length ) );
      ASSERT_EQ( Pelx::IpGenPrefix( prefix ).v6Prefix().address, prefix.address );
      ASSERT_FALSE( HasFailure() );
   }
   for ( unsigned i = 0; i < 4 * 256 * 33; ++i ) {
      Pelx::Ip4Prefix const prefix{ 0x01020304u ^ i % 256 << i / 256 % 4 * 8,
                                    static_cast< uint8_t >( i / 1024 ) };
      uint32_t const network = htonl( prefix.address );
      char text[INET_ADDRSTRLEN];
      checkPrefix( Pelx::IpGenPrefix( prefix ), ::inet_ntop( AF_INET, &network, text, sizeof text )
                                                   + ( '/' + std::to_string( prefix.length ) ) );
      ASSERT_EQ( Pelx::IpGenPrefix( prefix ).v4Prefix().address, prefix.address );
      ASSERT_FALSE( HasFailure() );
   }
}

} // namespace
