#include "sources/LargePages.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

namespace tpcli {

namespace {

constexpr size_t largePage = size_t{ 2 } << 20;
constexpr int growth = 32 << 20;
constexpr uint64_t worthIt = uint64_t{ 1 } << 20; // of input
constexpr uint64_t recordsPerInput = 2;           // bytes a byte, at most, of a compact file

char * heapEnd() {
   return static_cast< char * >( ::sbrk( 0 ) );
}

// Has the heap grow by this much at once, if it can.
void grow( uint64_t bytes ) {
   if ( bytes <= std::numeric_limits< size_t >::max() / 2 ) {
      void * const volatile room = std::malloc( static_cast< size_t >( bytes ) );
      std::free( room );
   }
}

} // namespace

void LargePages::start() {
   // All from the heap, which never shrinks.
   ::mallopt( M_MMAP_MAX, 0 );
   ::mallopt( M_TRIM_THRESHOLD, std::numeric_limits< int >::max() );
   ::mallopt( M_TOP_PAD, growth );
   done_ = heapEnd();
   grow( size_ * recordsPerInput );
}

void LargePages::add( size_t bytes ) {
   read_ += bytes;
   if ( std::max( read_, size_ ) < worthIt ) {
      return;
   }
   if ( !done_ ) {
      start();
   }
   // What has come since is hardly touched.
   void * begin = done_;
   auto room = static_cast< size_t >( heapEnd() - done_ );
   if ( std::align( largePage, largePage, begin, room ) ) {
      ::madvise( begin, room / largePage * largePage, MADV_HUGEPAGE );
      done_ = static_cast< char * >( begin ) + room / largePage * largePage;
   }
}

} // namespace tpcli
