// The memory of entities, strings and collections.
//
// A large policy is some twenty small blocks a rule. They come from here without a header of their
// own and side by side in the order in which they were asked for, which is the order in which a
// show reads them. Released blocks serve later requests of their size; the memory itself stays with
// the process.

#pragma once

#include <cstddef>

namespace Vorn::Pool {

// What every block is aligned to.
inline constexpr size_t alignment = 8;

// Throws std::bad_alloc. Safe for several threads while the thread-safe-pointer switch is on.
void * allocate( size_t bytes );

// Takes back a block of allocate(), with the size that was asked for.
void release( void * block, size_t bytes ) noexcept;

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
