#include "TrafficPolicy/platform/wendo/PrintBuffer.h"

#include <algorithm>
#include <cstring>

namespace wendo {

void PrintBuffer::makeRoomFor( size_t required ) {
   makeRoom();
   VORN_ASSERT( endPtr - writePtr >= ptrdiff_t( required ) );
}

void PrintBuffer::keep( std::string_view rest ) {
   std::memmove( begin_, rest.data(), rest.size() );
   writePtr = begin_ + rest.size();
}

void PrintBuffer::append( std::string_view text ) {
   while ( !text.empty() ) {
      char * to = getBuffer( std::min( text.size(), capacity() ) );
      size_t const piece = std::min( text.size(), static_cast< size_t >( endPtr - to ) );
      std::memcpy( to, text.data(), piece );
      commit( to + piece );
      text.remove_prefix( piece );
   }
}

} // namespace wendo
