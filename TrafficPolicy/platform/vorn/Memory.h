// The memory of entities, strings and collections.
//
// A large policy has some ten small blocks per rule. They are allocated here without headers, those
// of one size adjacent in the order of allocation, which is the order in which a show reads them:
// records of a kind have a size, and a summary needs three kinds of the ten. Released blocks serve
// later requests of their size; the memory is never returned to the system.
//
// Each thread has blocks of its own, so that none waits for another. A block may be released by
// another thread than the one that allocated it.

#pragma once

#include "TrafficPolicy/platform/Export.h"

#include <cstddef>

namespace Vorn::Pool {

// The alignment of every block, in bytes.
inline constexpr size_t alignment = 8;

// Throws std::bad_alloc. Thread-safe, and so is release().
TRAFFIC_POLICY_API void * allocate( size_t bytes );

// Releases a block of allocate(), with the size given there.
TRAFFIC_POLICY_API void release( void * block, size_t bytes ) noexcept;

// The pool as a container's allocator.
template< typename T >
struct Allocator {
   using value_type = T;

   Allocator() = default;
   template< typename U >
   constexpr Allocator( Allocator< U > const & ) noexcept {}

   T * allocate( size_t count ) {
      static_assert( alignof( T ) <= alignment );
      return static_cast< T * >( Pool::allocate( count * sizeof( T ) ) );
   }
   void deallocate( T * block, size_t count ) noexcept {
      Pool::release( block, count * sizeof( T ) );
   }
   friend bool operator==( Allocator const &, Allocator const & ) { return true; }
};

} // namespace Vorn::Pool
