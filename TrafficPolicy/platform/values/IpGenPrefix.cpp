#include "TrafficPolicy/platform/values/IpGenPrefix.h"

#include "TrafficPolicy/platform/vorn/Hash.h"

#include <algorithm>
#include <cstring>

namespace Pelx {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

// A byte in decimal and a dot, padded to a word, and its length without the padding.
struct DottedByte {
   char text[4];
   uint8_t size;
};
constexpr auto dottedBytes = [] {
   std::array< DottedByte, 256 > table{};
   for ( unsigned value = 0; value < 256; ++value ) {
      char * to = table[value].text;
      if ( value >= 100 ) {
         *to++ = static_cast< char >( '0' + value / 100 );
      }
      if ( value >= 10 ) {
         *to++ = static_cast< char >( '0' + value / 10 % 10 );
      }
      *to++ = static_cast< char >( '0' + value % 10 );
      *to++ = '.';
      table[value].size = static_cast< uint8_t >( to - table[value].text );
   }
   return table;
}();

// The digits and the dot.
char * putDotted( char * to, uint8_t value ) {
   DottedByte const & dotted = dottedBytes[value];
   std::memcpy( to, dotted.text, 4 );
   return to + dotted.size;
}

// The four bytes with dots between them; may write up to three bytes beyond.
char * putIp4( char * to, uint8_t const * bytes ) {
   for ( int i = 0; i < 4; ++i ) {
      to = putDotted( to, bytes[i] );
   }
   return to - 1;
}

char * putGroup( char * to, unsigned group ) {
   for ( int shift = group > 0xfff  ? 12
                     : group > 0xff ? 8
                     : group > 0xf  ? 4
                                    : 0;
         shift >= 0; shift -= 4 ) {
      *to++ = hexDigits[group >> shift & 0xf];
   }
   return to;
}

struct ZeroRun {
   int begin = -1;
   int length = 1; // a single zero group is not shortened
};

// The first of the longest runs of zero groups (RFC 5952, section 4.2).
ZeroRun longestZeroRun( unsigned const ( &groups )[8] ) {
   ZeroRun longest;
   for ( int begin = 0; begin < 8; ++begin ) {
      int end = begin;
      while ( end < 8 && groups[end] == 0 ) {
         ++end;
      }
      if ( end - begin > longest.length ) {
         longest = { begin, end - begin };
      }
      begin = end;
   }
   return longest;
}

} // namespace

char * Ip6Addr::printToBuffer( char * to ) const {
   static constexpr uint8_t mapped[12] = { 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff };
   if ( std::equal( std::begin( mapped ), std::end( mapped ), bytes.begin() ) ) {
      std::memcpy( to, "::ffff:", 7 );
      return putIp4( to + 7, bytes.data() + 12 );
   }
   unsigned groups[8];
   for ( size_t i = 0; i < 8; ++i ) {
      groups[i] = static_cast< unsigned >( bytes[2 * i] << 8 | bytes[2 * i + 1] );
   }
   ZeroRun const zeros = longestZeroRun( groups );
   for ( int i = 0; i < 8; ) {
      if ( i == zeros.begin ) {
         *to++ = ':';
         *to++ = ':';
         i += zeros.length;
         continue;
      }
      if ( i != 0 && i != zeros.begin + zeros.length ) {
         *to++ = ':';
      }
      to = putGroup( to, groups[i++] );
   }
   return to;
}

IpGenPrefix::IpGenPrefix( Ip4Prefix const & prefix )
   : length_( prefix.length ) {
   for ( unsigned i = 0; i < 4; ++i ) {
      bytes_[i] = static_cast< uint8_t >( prefix.address >> ( 24 - 8 * i ) );
   }
}

IpGenPrefix::IpGenPrefix( Ip6Prefix const & prefix )
   : family_( Family::ipv6 )
   , bytes_( prefix.address.bytes )
   , length_( prefix.length ) {}

char * IpGenPrefix::printToBuffer( char * to ) const {
   to = family_ == Family::ipv4 ? putIp4( to, bytes_.data() )
                                : v6Prefix().address.printToBuffer( to );
   *to = '/';
   return putDotted( to + 1, length_ ) - 1;
}

uint32_t IpGenPrefix::hash() const {
   std::array< uint32_t, 6 > words{ static_cast< uint32_t >( family_ ), length_ };
   std::memcpy( words.data() + 2, bytes_.data(), bytes_.size() );
   return Vorn::hashOfWords( words );
}

size_t to_stringb( char * buffer, size_t size, IpGenPrefix const & prefix ) {
   char text[IpGenPrefix::printRoom];
   auto const length = static_cast< size_t >( prefix.printToBuffer( text ) - text );
   if ( size > 0 ) {
      size_t const written = std::min( length, size - 1 );
      std::memcpy( buffer, text, written );
      buffer[written] = '\0';
   }
   return length;
}

} // namespace Pelx
