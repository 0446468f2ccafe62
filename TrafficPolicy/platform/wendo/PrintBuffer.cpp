#include "TrafficPolicy/platform/wendo/PrintBuffer.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace wendo {

namespace {

constexpr char guard = '\x5a';
constexpr ptrdiff_t guardSize = 16;

} // namespace

void PrintBuffer::makeRoomFor( size_t required ) {
   makeRoom();
   VORN_ASSERT( endPtr - writePtr >= ptrdiff_t( required ) );
}

void PrintBuffer::keep( std::string_view rest ) {
   std::memmove( begin_, rest.data(), rest.size() );
   writePtr = begin_ + rest.size();
}

void PrintBuffer::guardReservation( size_t required ) {
   reservedEnd_ = writePtr + required;
   std::fill_n( reservedEnd_, std::min( guardSize, endPtr - reservedEnd_ ), guard );
}

void PrintBuffer::checkReservation( char const * end ) const {
   bool const withinReservation = end <= reservedEnd_;
   VORN_ASSERT( withinReservation );
   bool const reservationOverrun =
      std::any_of( reservedEnd_, reservedEnd_ + std::min( guardSize, endPtr - reservedEnd_ ),
                   []( char byte ) { return byte != guard; } );
   VORN_ASSERT( !reservationOverrun );
}

void PrintBuffer::append( std::string_view text ) {
   VORN_ASSERT( capacity() > 0 );
   while ( !text.empty() ) {
      char * to = getBuffer( std::min( text.size(), capacity() ) );
      size_t const piece = std::min( text.size(), static_cast< size_t >( endPtr - to ) );
      std::memcpy( to, text.data(), piece );
      commit( to + piece );
      text.remove_prefix( piece );
   }
}

} // namespace wendo
