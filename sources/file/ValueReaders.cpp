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

// The usual form of a prefix; false for anything else, which the exact way then judges.
bool plainIp4( std::string_view text, Pelx::Ip4Prefix & prefix ) {
   char const * at = text.data();
   char const * const end = at + text.size();
   // A decimal number without leading zeros, up to the maximum.
   auto const number = [&]( uint32_t maximum, uint32_t & value ) {
      char const * const begin = at;
      for ( value = 0; at != end && *at >= '0' && *at <= '9' && value <= maximum; ++at ) {
         value = value * 10 + static_cast< uint32_t >( *at - '0' );
      }
      return at != begin && value <= maximum && ( *begin != '0' || at == begin + 1 );
   };
   uint32_t address = 0;
   uint32_t value = 0;
   for ( unsigned byte = 0; byte < 4; ++byte ) {
      if ( !number( 255, value ) || at == end || *at++ != ( byte < 3 ? '.' : '/' ) ) {
         return false;
      }
      address = address << 8 | value;
   }
   if ( !number( 32, value ) || at != end ) {
      return false;
   }
   prefix = { address, static_cast< uint8_t >( value ) };
   return ( uint64_t{ address } << value & 0xffffffff ) == 0;
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
