#include "TrafficPolicy/platform/wendo/JsonEscape.h"

#include <algorithm>
#include <cstdint>

namespace wendo {

namespace {

bool isContinuation( char byte ) {
   return ( static_cast< unsigned char >( byte ) & 0xc0 ) == 0x80;
}

void appendEscape( PrintBuffer & buffer, char byte ) {
   static constexpr char hexDigits[] = "0123456789abcdef";
   static constexpr std::string_view letters = "\"\\\b\f\n\r\t";
   static constexpr std::string_view names = "\"\\bfnrt";
   if ( size_t const at = letters.find( byte ); at != letters.npos ) {
      char const text[] = { '\\', names[at] };
      buffer.append( { text, 2 } );
   } else {
      char const text[] = { '\\', 'u', '0', '0', hexDigits[byte >> 4], hexDigits[byte & 0xf] };
      buffer.append( { text, 6 } );
   }
}

bool isEscaped( char byte ) {
   return static_cast< unsigned char >( byte ) < 0x20 || byte == '"' || byte == '\\';
}

// Most bytes: ASCII that passes unchanged.
bool isPlain( char byte ) {
   return static_cast< signed char >( byte ) >= 0x20 && byte != '"' && byte != '\\';
}

} // namespace

// RFC 3629: no overlong form, no surrogate, nothing above U+10FFFF.
size_t sequenceLength( std::string_view text ) {
   auto const byte = [&]( size_t at ) { return static_cast< unsigned char >( text[at] ); };
   unsigned const lead = byte( 0 );
   size_t const length = lead < 0x80                   ? 1
                         : lead >= 0xc2 && lead < 0xe0 ? 2
                         : lead >= 0xe0 && lead < 0xf0 ? 3
                         : lead >= 0xf0 && lead < 0xf5 ? 4
                                                       : 0;
   if ( length == 0 || length > text.size()
        || !std::all_of( text.begin() + 1, text.begin() + static_cast< ptrdiff_t >( length ),
                         isContinuation ) ) {
      return 0;
   }
   bool const overlong =
      ( lead == 0xe0 && byte( 1 ) < 0xa0 ) || ( lead == 0xf0 && byte( 1 ) < 0x90 );
   bool const surrogate = lead == 0xed && byte( 1 ) >= 0xa0;
   bool const tooLarge = lead == 0xf4 && byte( 1 ) >= 0x90;
   return overlong || surrogate || tooLarge ? 0 : length;
}

void appendEscaped( PrintBuffer & buffer, std::string_view text ) {
   size_t plain = 0; // what passes unchanged and is not appended yet
   auto const appendPlain = [&] {
      buffer.append( text.substr( 0, plain ) );
      text.remove_prefix( plain );
      plain = 0;
   };
   while ( plain < text.size() ) {
      if ( isPlain( text[plain] ) ) {
         ++plain;
      } else if ( isEscaped( text[plain] ) ) {
         appendPlain();
         appendEscape( buffer, text[0] );
         text.remove_prefix( 1 );
      } else if ( size_t const length = sequenceLength( text.substr( plain ) ) ) {
         plain += length;
      } else {
         appendPlain();
         buffer.append( "\xEF\xBF\xBD" );
         text.remove_prefix( 1 );
      }
   }
   appendPlain();
}

} // namespace wendo
