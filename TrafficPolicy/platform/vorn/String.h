// Vorn::String: the framework's immutable, counted string.
//
// One machine word. The text is stored in one shared block with its length, its hash and whether
// JSON must escape it, all computed once, so that a name looked up in five maps and written a
// million times is hashed and scanned once. Any bytes are allowed, NUL included. The empty string
// has no block.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/Threading.h"

#include <compare>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <string_view>
#include <utility>

namespace Vorn {

class TRAFFIC_POLICY_API String {
public:
   // The text is readable up to a multiple of this many bytes, so that a short one can be copied in
   // whole words; the padding is zero.
   static constexpr size_t padding = 8;

   constexpr String() noexcept = default;
   // Throws std::length_error for a text of 4 GiB or more.
   String( std::string_view text );
   String( char const * text )
      : String( std::string_view( text ) ) {}
   String( String const & other ) noexcept
      : block_( other.block_ ) {
      if ( block_ ) {
         countAdd( block_->references, 1u );
      }
   }
   String( String && other ) noexcept
      : block_( std::exchange( other.block_, nullptr ) ) {}
   ~String() {
      if ( block_ && countSub( block_->references, 1u ) == 0 ) {
         destroy( block_ );
      }
   }
   String & operator=( String other ) noexcept {
      std::swap( block_, other.block_ );
      return *this;
   }

   bool empty() const noexcept { return !block_; }
   size_t size() const noexcept { return block_ ? block_->size : 0; }
   char const * data() const noexcept { return block_ ? text( block_ ) : ""; }
   std::string_view view() const noexcept { return { data(), size() }; }
   uint32_t hash() const noexcept { return block_ ? block_->hash : 0; }
   // True when JSON needs no escaping (RFC 8259) or UTF-8 validation: no quote, backslash, control
   // character or byte above 0x7f.
   bool plain() const noexcept { return !block_ || block_->plain; }

   // True when both share a block: a sufficient test of equality, in one comparison.
   bool same( String const & other ) const noexcept { return block_ == other.block_; }

   friend bool operator==( String const & a, String const & b ) noexcept {
      return a.block_ == b.block_
             || ( a.block_ && b.block_ && a.block_->hash == b.block_->hash
                  && a.view() == b.view() );
   }
   friend bool operator==( String const & a, std::string_view b ) noexcept { return a.view() == b; }
   friend bool operator==( String const & a, char const * b ) noexcept { return a.view() == b; }
   // Byte by byte, as unsigned values; a prefix comes first.
   friend std::strong_ordering operator<=>( String const & a, String const & b ) noexcept {
      return a.view() <=> b.view();
   }

   TRAFFIC_POLICY_API friend std::ostream & operator<<( std::ostream & out, String const & s );

   // The hash of a String with this text.
   static uint32_t hashOf( std::string_view text ) noexcept;

private:
   struct Block {
      uint32_t references;
      uint32_t size;
      uint32_t hash;
      bool plain;
   };

   static char * text( Block * block ) { return reinterpret_cast< char * >( block + 1 ); }
   static void destroy( Block * block ) noexcept;

   Block * block_ = nullptr;
};

static_assert( sizeof( String ) == sizeof( void * ) );

} // namespace Vorn
