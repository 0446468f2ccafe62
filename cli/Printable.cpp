#include "cli/Printable.h"

#include "TrafficPolicy/platform/wendo/JsonEscape.h"

namespace tpcli {

namespace {

// C0, DEL, or C1: U+0080 to U+009F.
bool isControl( std::string_view character ) {
   auto const byte = static_cast< unsigned char >( character[0] );
   return byte < 0x20 || byte == 0x7f
          || ( byte == 0xc2 && static_cast< unsigned char >( character[1] ) < 0xa0 );
}

void appendEscape( std::string & result, char byte ) {
   static constexpr char hexDigits[] = "0123456789abcdef";
   switch ( byte ) {
   case '\n':
      result += "\\n";
      break;
   case '\r':
      result += "\\r";
      break;
   case '\t':
      result += "\\t";
      break;
   default:
      auto const value = static_cast< unsigned char >( byte );
      result.append( "\\x" ).append( { hexDigits[value >> 4], hexDigits[value & 0xf] } );
   }
}

} // namespace

std::string printable( std::string_view text ) {
   std::string result;
   result.reserve( text.size() );
   while ( !text.empty() ) {
      size_t const length = wendo::sequenceLength( text );
      std::string_view const character = text.substr( 0, length == 0 ? 1 : length );
      if ( length == 0 || isControl( character ) ) {
         for ( char const byte : character ) {
            appendEscape( result, byte );
         }
      } else {
         result += character;
      }
      text.remove_prefix( character.size() );
   }
   return result;
}

} // namespace tpcli
