// Texts that stay where they are, and go all at once.

#pragma once

#include <memory_resource>
#include <string_view>

namespace tpcli {

class TextArena {
public:
   // A copy that holds as long as the arena.
   std::string_view copy( std::string_view text ) {
      if ( text.empty() ) {
         return {};
      }
      auto * const to = static_cast< char * >( memory_.allocate( text.size(), 1 ) );
      text.copy( to, text.size() );
      return { to, text.size() };
   }

private:
   std::pmr::monotonic_buffer_resource memory_;
};

} // namespace tpcli
