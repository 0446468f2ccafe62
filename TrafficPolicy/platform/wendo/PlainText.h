// A short text that is known when the program is built: a keyword, a label, the name of a number.

#pragma once

#include "TrafficPolicy/platform/vorn/Assert.h"

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace wendo {

// Has a fixed number of bytes, so that it is written by copies of known size, and nothing that JSON
// would escape.
class PlainText {
public:
   static constexpr size_t room = 32;

   constexpr PlainText() = default;
   consteval PlainText( char const * text )
      : PlainText( text, "" ) {}
   // Two texts, concatenated. Fails an assertion, or does not compile where they are constants,
   // when they are longer than the room or have a character to escape.
   constexpr explicit PlainText( std::string_view text, std::string_view more ) {
      VORN_ASSERT( text.size() + more.size() <= room );
      for ( std::string_view const part : { text, more } ) {
         for ( char const c : part ) {
            VORN_ASSERT( c >= 0x20 && c < 0x7f && c != '"' && c != '\\' );
            text_[size_++] = c;
         }
      }
   }

   constexpr bool empty() const { return size_ == 0; }
   constexpr size_t size() const { return size_; }
   constexpr std::string_view view() const { return { text_, size_ }; }

   // Copies the text and returns its end. The buffer holds at least room bytes.
   char * printToBuffer( char * to ) const { return copyBlock( to, text_, size_ ); }

   // Copies a text and returns its end; `room` bytes are readable at the source and writable at the
   // destination. A text that the compiler knows becomes stores of constants.
   static char * copyBlock( char * to, char const * text, size_t size ) {
      constexpr size_t half = room / 2;
      if ( __builtin_constant_p( size ) ) {
         std::memcpy( to, text, size );
      } else {
         std::memcpy( to, text, half );
         if ( size > half ) {
            std::memcpy( to + half, text + half, half );
         }
      }
      return to + size;
   }

private:
   char text_[room] = {};
   unsigned char size_ = 0;
};

} // namespace wendo
