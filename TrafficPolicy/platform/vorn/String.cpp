#include "TrafficPolicy/platform/vorn/String.h"

#include "TrafficPolicy/platform/vorn/Hash.h"
#include "TrafficPolicy/platform/vorn/Memory.h"

#include <limits>
#include <ostream>
#include <stdexcept>

namespace Vorn {

namespace {

constexpr uint32_t ones = 0x01010101;
constexpr uint32_t highBits = 0x80808080;

// High bits are set where a byte of the word is zero (and only in a higher byte beside one).
constexpr uint32_t zeroBytes( uint32_t word ) {
   return ( word - ones ) & ~word & highBits;
}

constexpr uint32_t needsEscape( uint32_t word ) {
   uint32_t const control = ( word - ones * 0x20 ) & ~word & highBits;
   return ( word & highBits ) | control | zeroBytes( word ^ ( ones * '"' ) )
          | zeroBytes( word ^ ( ones * '\\' ) );
}

uint32_t wordAt( char const * text ) {
   uint32_t word = 0;
   std::memcpy( &word, text, sizeof word );
   return word;
}

size_t paddedSize( size_t size ) {
   return ( size + String::padding - 1 ) / String::padding * String::padding;
}

struct Scan {
   uint32_t hash;
   bool plain;
};

// The sum of the text's words in pairs. Texts of one length have different pairs; where the length
// is no multiple of a pair's, some bytes are in two words.
class Summing {
public:
   explicit Summing( size_t size )
      : sum_( hashKeys.size * size ) {}

   // Up to a whole chunk.
   void addChunk( char const * text, size_t size ) {
      uint32_t const * keys = hashKeys.words.data();
      for ( ; size > 8; size -= 8, text += 8, keys += 2 ) {
         add( keys, wordAt( text ), wordAt( text + 4 ) );
      }
      if ( size == 8 ) {
         add( keys, wordAt( text ), wordAt( text + 4 ) );
      } else if ( size >= 4 ) {
         add( keys, wordAt( text ), wordAt( text + size - 4 ) );
      } else if ( size > 0 ) {
         auto const byte = [&]( size_t at ) {
            return uint32_t{ static_cast< unsigned char >( text[at] ) };
         };
         add( keys, byte( 0 ) | byte( size / 2 ) << 8 | byte( size - 1 ) << 16 | ' ' << 24,
              ones * ' ' );
      }
   }
   // The sum so far is a pair before the next chunk.
   void endChunk() {
      sum_ = hashPair( hashKeys.words.data() + HashKeys::chunk, static_cast< uint32_t >( sum_ ),
                       static_cast< uint32_t >( sum_ >> 32 ) );
   }
   Scan end() const { return { hashOfSum( sum_ ), escapes_ == 0 }; }

private:
   void add( uint32_t const * keys, uint32_t a, uint32_t b ) {
      sum_ += hashPair( keys, a, b );
      escapes_ |= needsEscape( a ) | needsEscape( b );
   }

   uint64_t sum_;
   uint32_t escapes_ = 0;
};

Scan scan( std::string_view text ) {
   constexpr size_t chunk = HashKeys::chunk * sizeof( uint32_t );
   Summing summing( text.size() );
   for ( ; text.size() > chunk; text.remove_prefix( chunk ) ) {
      summing.addChunk( text.data(), chunk );
      summing.endChunk();
   }
   summing.addChunk( text.data(), text.size() );
   return summing.end();
}

} // namespace

String::String( std::string_view source ) {
   if ( source.empty() ) {
      return;
   }
   if ( source.size() > std::numeric_limits< uint32_t >::max() - sizeof( Block ) - padding ) {
      throw std::length_error( "a string of 4 GiB" );
   }
   size_t const padded = paddedSize( source.size() );
   block_ = static_cast< Block * >( Pool::allocate( sizeof( Block ) + padded ) );
   auto const [hash, plain] = scan( source );
   *block_ = { 1, static_cast< uint32_t >( source.size() ), hash, plain };
   std::memset( text( block_ ) + padded - padding, 0, padding );
   std::memcpy( text( block_ ), source.data(), source.size() );
}

std::ostream & operator<<( std::ostream & out, String const & s ) {
   return out << s.view();
}

uint32_t String::hashOf( std::string_view text ) noexcept {
   return text.empty() ? 0 : scan( text ).hash;
}

void String::destroy( Block * block ) noexcept {
   Pool::release( block, sizeof( Block ) + paddedSize( block->size ) );
}

} // namespace Vorn
