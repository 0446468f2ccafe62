#include "TrafficPolicy/platform/vorn/Pool.h"

#include "TrafficPolicy/platform/vorn/Threading.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <new>
#include <utility>

namespace Vorn::Pool {

namespace {

// Larger blocks are left to the system allocator; under the address sanitizer all are, so that it
// checks each of them.
#ifdef __SANITIZE_ADDRESS__
constexpr size_t pooledMax = 0;
#else
constexpr size_t pooledMax = 256;
#endif

constexpr size_t firstChunk = size_t{ 16 } << 10;
constexpr size_t lastChunk = size_t{ 1 } << 20;

struct FreeBlock {
   FreeBlock * next;
};

// A stack of released blocks per size, and a chunk to cut new ones from.
struct State {
   std::array< FreeBlock *, pooledMax / alignment + 1 > released{};
   char * at = nullptr;
   size_t left = 0;
   size_t chunk = firstChunk;
};
constinit State state;
constinit std::mutex mutex;

// Calls the function, under the lock while the process may have several threads.
template< typename Function >
auto alone( Function const & function ) {
   if ( threadSafePointers ) [[unlikely]] {
      std::lock_guard const lock( mutex );
      return function();
   }
   return function();
}

size_t sizeClass( size_t bytes ) {
   return ( bytes + alignment - 1 ) / alignment;
}

// The rest of the old chunk is smaller than the requested block and stays unused.
void startChunk() {
   state.at = static_cast< char * >( ::operator new( state.chunk ) );
   state.left = state.chunk;
   state.chunk = std::min( state.chunk * 2, lastChunk );
}

// A block of the size class.
void * take( size_t index ) {
   if ( FreeBlock * const block = state.released[index] ) {
      state.released[index] = block->next;
      return block;
   }
   if ( state.left < index * alignment ) {
      startChunk();
   }
   state.left -= index * alignment;
   return std::exchange( state.at, state.at + index * alignment );
}

} // namespace

void * allocate( size_t bytes ) {
   if ( bytes > pooledMax || bytes == 0 ) {
      return ::operator new( bytes );
   }
   return alone( [&] { return take( sizeClass( bytes ) ); } );
}

void release( void * block, size_t bytes ) noexcept {
   if ( bytes > pooledMax || bytes == 0 ) {
      ::operator delete( block );
      return;
   }
   alone( [&] {
      FreeBlock *& first = state.released[sizeClass( bytes )];
      first = ::new ( block ) FreeBlock{ first };
   } );
}

} // namespace Vorn::Pool
