#include "sources/file/ValueReaders.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatchOption;

// A decimal number without sign or leading zeros; nothing for any other text.
std::optional< uint32_t > decimal( std::string_view text ) {
   uint32_t number = 0;
   char const * const end = text.data() + text.size();
   auto const result = std::from_chars( text.data(), end, number );
   bool const leadingZero = text.size() > 1 && text[0] == '0';
   return result.ec == std::errc() && result.ptr == end && !leadingZero ? std::optional( number )
                                                                        : std::nullopt;
}

// The number with this name; nothing when there is none.
std::optional< uint32_t > named( std::string_view name, NumberKind const & kind ) {
   for ( uint32_t number = 0; kind.nameOf && !name.empty() && number <= kind.maximum; ++number ) {
      if ( kind.nameOf( number ).view() == name ) {
         return number;
      }
   }
   return std::nullopt;
}

struct PrefixText {
   char address[INET6_ADDRSTRLEN] = {};
   std::optional< unsigned > length; // nothing: what follows the address is none
   bool isBare = false;              // nothing follows it
};

PrefixText split( std::string_view text ) {
   PrefixText prefix;
   size_t const size = std::min( text.find( '/' ), text.size() );
   if ( size < sizeof prefix.address && text.find( '\0' ) == text.npos ) {
      std::memcpy( prefix.address, text.data(), size );
      prefix.isBare = size == text.size();
      prefix.length = prefix.isBare ? std::nullopt : decimal( text.substr( size + 1 ) );
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

template< size_t size >
bool hostBitsSet( std::array< uint8_t, size > const & bytes, unsigned length ) {
   for ( size_t bit = length; bit < size * 8; ++bit ) {
      if ( bytes[bit / 8] >> ( 7 - bit % 8 ) & 1 ) {
         return true;
      }
   }
   return false;
}

[[noreturn]] void failNumber( JsonValue const & value, std::string_view text,
                              NumberKind const & kind ) {
   value.fail( quoted( text ) + " is not " + std::string( kind.what ) + " (0 to "
               + std::to_string( kind.maximum ) + ")" );
}

// The pair that the text is.
std::optional< Classification::NumericalRange > pairOf( std::string_view text, uint32_t maximum ) {
   size_t const dash = text.find( '-' );
   if ( dash == text.npos ) {
      return std::nullopt;
   }
   auto const low = decimal( text.substr( 0, dash ) );
   auto const high = decimal( text.substr( dash + 1 ) );
   if ( !low || !high || std::max( *low, *high ) > maximum ) {
      return std::nullopt;
   }
   return Classification::NumericalRange{ *low, *high };
}

} // namespace

uint32_t readNumber( JsonValue & value, NumberKind const & kind ) {
   if ( !kind.nameOf || !value.isString() ) {
      return static_cast< uint32_t >( value.number( kind.what, kind.maximum ) );
   }
   std::string_view const text = value.string();
   auto const number = named( text, kind );
   if ( !number ) {
      failNumber( value, text, kind );
   }
   return *number;
}

Classification::NumericalRange readBounds( JsonValue & value, NumberKind const & kind ) {
   Classification::NumericalRange range;
   if ( value.isString() ) {
      std::string_view const text = value.string();
      if ( auto const number = named( text, kind ) ) {
         return { *number, *number };
      }
      auto const pair = pairOf( text, kind.maximum );
      if ( !pair ) {
         failNumber( value, text, kind );
      }
      range = *pair;
   } else if ( value.isList() ) {
      uint32_t bounds[2] = {};
      size_t count = 0;
      value.list( [&]( JsonValue bound ) {
         if ( count == 2 ) {
            bound.fail( "a range is one number or a pair" );
         }
         bounds[count++] = readNumber( bound, kind );
      } );
      if ( count != 2 ) {
         value.fail( "a range is one number or a pair" );
      }
      range = { bounds[0], bounds[1] };
   } else {
      range.low = range.high = readNumber( value, kind );
   }
   if ( range.low > range.high ) {
      value.fail( "the range's low bound is above its high bound" );
   }
   return range;
}

Pelx::IpGenPrefix readPrefix( JsonValue & value, ClassMapMatchOption family ) {
   std::string_view const text = value.string();
   Pelx::Ip4Prefix ip4;
   if ( family != ClassMapMatchOption::ipv6 && plainIp4( text, ip4 ) ) {
      return Pelx::IpGenPrefix( ip4 );
   }
   PrefixText const prefix = split( text );
   // The address's bytes and the length, where the text is a prefix of the family.
   auto const parse = [&]( int addressFamily, auto & bytes ) -> std::optional< uint8_t > {
      constexpr unsigned whole = sizeof bytes * 8;
      unsigned const length = prefix.isBare ? whole : prefix.length.value_or( whole + 1 );
      if ( length > whole || ::inet_pton( addressFamily, prefix.address, &bytes ) != 1 ) {
         return std::nullopt;
      }
      if ( hostBitsSet( bytes, length ) ) {
         value.fail( quoted( text ) + " has bits set behind its length" );
      }
      return static_cast< uint8_t >( length );
   };
   if ( family != ClassMapMatchOption::ipv6 ) {
      std::array< uint8_t, 4 > bytes{};
      if ( auto const length = parse( AF_INET, bytes ) ) {
         uint32_t address = 0;
         for ( uint8_t const byte : bytes ) {
            address = address << 8 | byte;
         }
         return Pelx::IpGenPrefix( Pelx::Ip4Prefix{ address, *length } );
      }
   }
   if ( family != ClassMapMatchOption::ipv4 ) {
      Pelx::Ip6Prefix result;
      if ( auto const length = parse( AF_INET6, result.address.bytes ) ) {
         result.length = *length;
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
