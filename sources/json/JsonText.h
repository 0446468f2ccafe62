// The tokens of a JSON document, one behind the other, exactly as RFC 8259 has them.
//
// The text comes in windows. A view of a token holds until anything else is read, and so does a
// position in the window.

#pragma once

#include "sources/json/InputFile.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tpcli {

// What begins at a character that may begin a value.
enum class JsonType { object, list, string, number, boolean, null };

class JsonText {
public:
   // A place in the text, both counted from 1; the column in bytes.
   struct Position {
      size_t line;
      size_t column;
   };

   // The file stays the caller's and outlives this. Fails for a text without a value.
   explicit JsonText( InputFile & file );

   // The file's name.
   std::string const & name() const { return file_.name(); }
   Position position() const { return { line_, column( at_ ) }; }

   // The next character that is no white space; a zero byte at the end of the text.
   char next() {
      auto const byte = static_cast< unsigned char >( *at_ );
      return byte > ' ' ? *at_ : skipSpace();
   }
   // Takes that character.
   void take() { ++at_; }

   // The type of the next value; fails where none begins.
   JsonType type();

   // Moves to the next element of a list, or behind its end. The list begins with "[", which was
   // taken, and the element before was read.
   bool element( bool isFirst ) {
      if ( !isFirst && at_[0] == ',' && static_cast< unsigned char >( at_[1] ) > ' ' ) {
         take();
         return true;
      }
      return anyElement( isFirst );
   }
   // Moves to the next name of an object, or behind its end; likewise.
   bool member( bool isFirst ) {
      if ( !isFirst && at_[0] == ',' && at_[1] == '"' ) {
         take();
         return true;
      }
      return anyMember( isFirst );
   }
   // Moves from behind a name to its value; returns where that begins.
   Position memberValue() {
      if ( next() != ':' ) [[unlikely]] {
         fail( "Missing a colon after a name of object member." );
      }
      take();
      next();
      return position();
   }
   // Nothing but white space follows.
   void end();

   // A string that begins here, its escapes resolved. It is valid UTF-8.
   std::string_view string() {
      char const * const begin = at_ + 1;
      char const * const end = plainEnd( begin );
      if ( *end == '"' ) [[likely]] {
         at_ = end + 1;
         return { begin, static_cast< size_t >( end - begin ) };
      }
      return anyString();
   }
   // A number that begins here, as it is written.
   std::string_view number();
   // Reads a number that begins here, if it is a whole one of less than 19 digits without a sign,
   // up to the maximum.
   bool smallNumber( uint64_t & value, uint64_t maximum ) {
      constexpr ptrdiff_t digitsMax = 18;
      char const * end = at_;
      uint64_t result = 0;
      for ( ; static_cast< unsigned char >( *end - '0' ) <= 9; ++end ) {
         result = result * 10 + static_cast< unsigned char >( *end - '0' );
      }
      auto const digits = end - at_;
      bool const ends = *end == ',' || *end == ']' || *end == '}';
      if ( !ends || digits == 0 || digits > digitsMax || ( *at_ == '0' && digits > 1 )
           || result > maximum ) {
         return false;
      }
      at_ = end;
      value = result;
      return true;
   }
   // Reads a word (true, false, null) that begins here; fails where it is another one.
   void word( std::string_view word );
   // Reads it, and returns true, only if the whole word is this one.
   bool isWord( std::string_view word );
   // Reads a number or a word that begins here, right or wrong.
   std::string scrap();
   // Passes over the next value, whatever it is.
   void skip();

   // The error of a text that is no JSON, at the next character or some bytes behind it.
   [[noreturn]] void fail( char const * message, size_t behind = 0 );

private:
   // The first byte that is a quote, a backslash, a control character or not ASCII. The zeros
   // behind the window are control characters.
   static char const * plainEnd( char const * at ) {
#ifdef __SSE2__
      for ( ;; at += sizeof( __m128i ) ) {
         __m128i const bytes = _mm_loadu_si128( reinterpret_cast< __m128i const * >( at ) );
         __m128i const quotes = _mm_cmpeq_epi8( bytes, _mm_set1_epi8( '"' ) );
         __m128i const backslashes = _mm_cmpeq_epi8( bytes, _mm_set1_epi8( '\\' ) );
         // As signed numbers, what is not ASCII is below, too.
         __m128i const others = _mm_cmplt_epi8( bytes, _mm_set1_epi8( ' ' ) );
         auto const special = static_cast< unsigned >(
            _mm_movemask_epi8( _mm_or_si128( others, _mm_or_si128( quotes, backslashes ) ) ) );
         if ( special != 0 ) {
            return at + std::countr_zero( special );
         }
      }
#else
      // Sets bits in such bytes of a word; the lowest one is in the first of them, where the first
      // byte is the lowest one, as in the switch's machines.
      using Word = size_t;
      constexpr Word ones = ~Word{ 0 } / 0xff;
      auto const below = []( Word bytes, unsigned char limit ) {
         return ( bytes - ones * limit ) & ~bytes;
      };
      for ( ;; at += sizeof( Word ) ) {
         Word bytes = 0;
         std::memcpy( &bytes, at, sizeof bytes );
         Word const special = ( below( bytes ^ ones * '"', 1 ) | below( bytes ^ ones * '\\', 1 )
                                | below( bytes, ' ' ) | bytes )
                              & ones * 0x80;
         if ( special != 0 ) {
            return at + std::countr_zero( special ) / 8;
         }
      }
#endif
   }

   size_t column( char const * at ) const {
      return columnBase_ + static_cast< size_t >( at - file_.begin() );
   }
   // More text behind what stands at at_; false at the end.
   bool more();
   // Has so many bytes at at_, or else the text's end and zeros.
   void have( size_t bytes );

   char skipSpace();
   bool anyElement( bool isFirst );
   bool anyMember( bool isFirst );
   std::string_view anyString();
   void escape();
   unsigned hexDigits( size_t behind );
   void multiByte();
   void scalar();
   // The character so many bytes behind at_.
   char peek( size_t behind );
   // Moves behind the digits there; returns whether there is any.
   bool digits( size_t & behind );

   InputFile & file_;
   char const * at_;
   size_t line_ = 1;
   size_t columnBase_ = 1; // the column of the window's begin, modulo the size of the type
   std::string string_;    // the last string that was not plain
};

} // namespace tpcli
