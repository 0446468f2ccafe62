#include "sources/Memory.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cstdlib>
#include <limits>
#include <memory>

namespace tpcli {

namespace {

constexpr size_t largePage = 2u << 20;
constexpr size_t worthIt = 4 * largePage;

} // namespace

void * allocateLarge( size_t bytes ) {
   if ( bytes < worthIt ) {
      return std::malloc( bytes );
   }
   size_t const rounded = ( bytes + largePage - 1 ) / largePage * largePage;
   void * const block = std::aligned_alloc( largePage, rounded );
   if ( block ) {
      ::madvise( block, rounded, MADV_HUGEPAGE );
   }
   return block;
}

void expectAllocations( size_t bytes ) {
   if ( bytes < worthIt || bytes > std::numeric_limits< size_t >::max() / 4 ) {
      return;
   }
   // A block from the heap itself, given back untouched: the allocator keeps its address range and
   // fills it with the small pieces that follow.
   ::mallopt( M_MMAP_MAX, 0 );
   ::mallopt( M_TRIM_THRESHOLD, std::numeric_limits< int >::max() );
   void * const block = std::malloc( bytes - 1 );
   if ( !block ) {
      return;
   }
   void * begin = block;
   size_t room = bytes - 1;
   if ( std::align( largePage, largePage, begin, room ) ) {
      ::madvise( begin, room / largePage * largePage, MADV_HUGEPAGE );
   }
   std::free( block );
}

} // namespace tpcli
