#include "sources/LargePages.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <limits>
#include <memory>

namespace tpcli {

namespace {

constexpr size_t largePage = size_t{ 2 } << 20;
constexpr int growth = 32 << 20;
constexpr size_t worthIt = size_t{ 1 } << 20; // of input

char * heapEnd() {
   return static_cast< char * >( ::sbrk( 0 ) );
}

} // namespace

void LargePages::add( size_t bytes ) {
   read_ += bytes;
   if ( read_ < worthIt ) {
      return;
   }
   if ( !done_ ) {
      // All from the heap, which never shrinks.
      ::mallopt( M_MMAP_MAX, 0 );
      ::mallopt( M_TRIM_THRESHOLD, std::numeric_limits< int >::max() );
      ::mallopt( M_TOP_PAD, growth );
      done_ = heapEnd();
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
