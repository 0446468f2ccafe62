#include "sources/file/ValueReaders.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatchOption;

// The decimal length behind the address, without sign or leading zeros; above any length when it is
// none.
unsigned prefixLength( std::string_view text ) {
   unsigned length = 0;
   auto const [end, error] = std::from_chars( text.data(), text.data() + text.size(), length );
   bool const whole = error == std::errc() && end == text.data() + text.size();
   bool const leadingZero = text.size() > 1 && text[0] == '0';
   return whole && !leadingZero ? length : ~0u;
}

struct PrefixText {
   char address[INET6_ADDRSTRLEN] = {};
   unsigned length = ~0u;
};

PrefixText split( std::string_view text ) {
   PrefixText prefix;
   size_t const slash = text.find( '/' );
   if ( slash < sizeof prefix.address && text.find( '\0' ) == text.npos ) {
      std::memcpy( prefix.address, text.data(), slash );
      prefix.length = prefixLength( text.substr( slash + 1 ) );
   }
   return prefix;
}

// The usual form of a prefix at a few instructions a character; false for anything else, which the
// exact way then judges.
bool plainIp4( std::string_view text, Pelx::Ip4Prefix & prefix ) {
   uint32_t numbers[5] = {};
   size_t count = 0;
   size_t digits = 0;
   for ( char const c : text ) {
      if ( c >= '0' && c <= '9' && digits < 3 && ( digits == 0 || numbers[count] != 0 ) ) {
         numbers[count] = numbers[count] * 10 + static_cast< uint32_t >( c - '0' );
         ++digits;
      } else if ( c == ( count == 3 ? '/' : '.' ) && digits > 0 && numbers[count] <= 255
                  && count < 4 ) {
         ++count;
         digits = 0;
      } else {
         return false;
      }
   }
   if ( count != 4 || digits == 0 || numbers[4] > 32 ) {
      return false;
   }
   prefix.address = numbers[0] << 24 | numbers[1] << 16 | numbers[2] << 8 | numbers[3];
   prefix.length = static_cast< uint8_t >( numbers[4] );
   return ( uint64_t{ prefix.address } << prefix.length & 0xffffffff ) == 0;
}

bool hostBitsSet( uint8_t const * bytes, size_t size, unsigned length ) {
   for ( size_t bit = length; bit < size * 8; ++bit ) {
      if ( bytes[bit / 8] >> ( 7 - bit % 8 ) & 1 ) {
         return true;
      }
   }
   return false;
}

} // namespace

Pelx::IpGenPrefix readPrefix( JsonValue & value, ClassMapMatchOption family ) {
   std::string_view const text = value.string();
   Pelx::Ip4Prefix ip4;
   if ( family != ClassMapMatchOption::ipv6 && plainIp4( text, ip4 ) ) {
      return Pelx::IpGenPrefix( ip4 );
   }
   PrefixText const prefix = split( text );
   auto const length = static_cast< uint8_t >( prefix.length );
   auto const checkHostBits = [&]( uint8_t const * bytes, size_t size ) {
      if ( hostBitsSet( bytes, size, length ) ) {
         value.fail( quoted( text ) + " has bits set behind its length" );
      }
   };
   if ( family != ClassMapMatchOption::ipv6 && prefix.length <= 32 ) {
      uint8_t bytes[4];
      if ( ::inet_pton( AF_INET, prefix.address, bytes ) == 1 ) {
         checkHostBits( bytes, sizeof bytes );
         uint32_t address = 0;
         for ( uint8_t const byte : bytes ) {
            address = address << 8 | byte;
         }
         return Pelx::IpGenPrefix( Pelx::Ip4Prefix{ address, length } );
      }
   }
   if ( family != ClassMapMatchOption::ipv4 && prefix.length <= 128 ) {
      Pelx::Ip6Prefix result{ {}, length };
      if ( ::inet_pton( AF_INET6, prefix.address, result.address.bytes.data() ) == 1 ) {
         checkHostBits( result.address.bytes.data(), result.address.bytes.size() );
         return Pelx::IpGenPrefix( result );
      }
   }
   value.fail( quoted( text ) + " is not an "
               + ( family == ClassMapMatchOption::ipv4   ? "IPv4"
                   : family == ClassMapMatchOption::ipv6 ? "IPv6"
                                                         : "IP" )
               + " prefix" );
}

L3::VrfName vrfOf( std::string_view name, JsonValue const & place ) {
   if ( name.size() > L3::VrfName::maxLength ) {
      place.fail( quoted( name ) + " is longer than " + std::to_string( L3::VrfName::maxLength )
                  + " bytes" );
   }
   return L3::VrfName( Vorn::String( name ) );
}

L3::VrfName readVrf( JsonValue & value ) {
   return vrfOf( value.string(), value );
}

ClassMapMatchOption familyOf( std::string_view name, JsonValue const & place ) {
   for ( auto const option : { ClassMapMatchOption::ipv4, ClassMapMatchOption::ipv6,
                               ClassMapMatchOption::mac, ClassMapMatchOption::mpls } ) {
      if ( name == PolicyMap::matchOptionName( option ).view() ) {
         return option;
      }
   }
   place.fail( quoted( name ) + R"( is not one of "ipv4", "ipv6", "mac", "mpls")" );
}

Umbo::UniqueId readUniqueId( JsonValue & value ) {
   return Umbo::UniqueId( value.number( "a counter id" ) );
}

} // namespace tpcli
