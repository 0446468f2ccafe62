#include "bench/Memory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace Bench {

Memory memory;

} // namespace Bench

// The program has one thread, so that plain numbers are enough.

void * operator new( size_t size ) {
   void * const place = std::malloc( size == 0 ? 1 : size );
   if ( !place ) {
      throw std::bad_alloc();
   }
   Bench::Memory & memory = Bench::memory;
   memory.live += malloc_usable_size( place );
   memory.peak = std::max( memory.peak, memory.live );
   ++memory.allocations;
   return place;
}

void operator delete( void * place ) noexcept {
   if ( place ) {
      Bench::memory.live -= malloc_usable_size( place );
      std::free( place );
   }
}

void operator delete( void * place, size_t ) noexcept {
   operator delete( place );
}
