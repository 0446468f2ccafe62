#include "sources/rules/Notes.h"

namespace tpcli {

void addNote( Notes & notes, std::string_view place, std::string_view text ) {
   static constexpr char hexDigits[] = "0123456789abcdef";
   std::string line;
   for ( std::string_view const part : { place, std::string_view( ": " ), text } ) {
      for ( char const c : part ) {
         auto const byte = static_cast< unsigned char >( c );
         if ( byte < 0x20 || byte == 0x7f ) {
            line += { '\\', 'u', '0', '0', hexDigits[byte >> 4], hexDigits[byte & 0xf] };
         } else {
            line += c;
         }
      }
   }
   notes.push_back( std::move( line ) );
}

} // namespace tpcli
