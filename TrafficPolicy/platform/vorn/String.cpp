#include "TrafficPolicy/platform/vorn/String.h"

#include "TrafficPolicy/platform/vorn/Pool.h"

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

constexpr uint32_t mix( uint32_t hash, uint32_t word ) {
   uint64_t const product = uint64_t{ hash ^ word } * 0x9E3779B1u;
   return static_cast< uint32_t >( product ) ^ static_cast< uint32_t >( product >> 32 );
}

size_t paddedSize( size_t size ) {
   return ( size + String::padding - 1 ) / String::padding * String::padding;
}

struct Scan {
   uint32_t hash;
   bool plain;
};

// In words of four bytes, so that 32-bit and 64-bit machines have the same hash at full speed.
Scan scan( std::string_view text ) {
   uint32_t hash = 0x811C9DC5u + static_cast< uint32_t >( text.size() );
   uint32_t escapes = 0;
   size_t at = 0;
   for ( ; at + 4 <= text.size(); at += 4 ) {
      uint32_t word = 0;
      std::memcpy( &word, text.data() + at, 4 );
      hash = mix( hash, word );
      escapes |= needsEscape( word );
   }
   if ( at < text.size() ) {
      uint32_t word = ones * ' ';
      std::memcpy( &word, text.data() + at, text.size() - at );
      hash = mix( hash, word );
      escapes |= needsEscape( word );
   }
   return { mix( hash, hash >> 15 ), escapes == 0 };
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
