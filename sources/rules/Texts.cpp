#include "sources/rules/Texts.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <array>
#include <charconv>

namespace tpcli {

namespace {

// Clears the bits behind the length.
template< size_t size >
void clearHostBits( std::array< uint8_t, size > & bytes, unsigned length ) {
   for ( size_t at = length / 8; at < size; ++at ) {
      unsigned const kept = at == length / 8 ? length % 8 : 0;
      bytes[at] = static_cast< uint8_t >( bytes[at] & 0xff00u >> kept );
   }
}

// The address's bytes with host bits cleared, and the length.
template< size_t size >
bool parseAddress( int addressFamily, char const * address, std::string_view lengthText,
                   std::array< uint8_t, size > & bytes, uint8_t & length ) {
   auto const number = parseNumber( lengthText, size * 8 );
   if ( !number || ::inet_pton( addressFamily, address, bytes.data() ) != 1 ) {
      return false;
   }
   length = static_cast< uint8_t >( *number );
   clearHostBits( bytes, length );
   return true;
}

} // namespace

std::optional< uint64_t > parseNumber( std::string_view text, uint64_t maximum ) {
   bool const hex = text.starts_with( "0x" ) || text.starts_with( "0X" );
   text.remove_prefix( hex ? 2 : 0 );
   uint64_t value = 0;
   char const * const end = text.data() + text.size();
   auto const [at, error] = std::from_chars( text.data(), end, value, hex ? 16 : 10 );
   return error == std::errc() && at == end && value <= maximum ? std::optional( value )
                                                                : std::nullopt;
}

std::optional< Pelx::IpGenPrefix > parsePrefix( std::string_view text,
                                                PolicyMap::ClassMapMatchOption family ) {
   bool const isIp4 = family == PolicyMap::ClassMapMatchOption::ipv4;
   std::string_view const whole = isIp4 ? "32" : "128";
   size_t const slash = text.find( '/' );
   std::string_view const length = slash == text.npos ? whole : text.substr( slash + 1 );
   text = text.substr( 0, slash );
   char address[INET6_ADDRSTRLEN] = {};
   if ( text.size() >= sizeof address || text.find( '\0' ) != text.npos ) {
      return std::nullopt;
   }
   text.copy( address, text.size() );
   if ( isIp4 ) {
      std::array< uint8_t, 4 > bytes{};
      Pelx::Ip4Prefix prefix;
      if ( !parseAddress( AF_INET, address, length, bytes, prefix.length ) ) {
         return std::nullopt;
      }
      for ( uint8_t const byte : bytes ) {
         prefix.address = prefix.address << 8 | byte;
      }
      return Pelx::IpGenPrefix( prefix );
   }
   Pelx::Ip6Prefix prefix;
   if ( !parseAddress( AF_INET6, address, length, prefix.address.bytes, prefix.length ) ) {
      return std::nullopt;
   }
   return Pelx::IpGenPrefix( prefix );
}

} // namespace tpcli
