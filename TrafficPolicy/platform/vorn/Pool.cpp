#include "TrafficPolicy/platform/vorn/Pool.h"

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

// Blocks of a size are cut from a run of their own, so that a walk over one kind of record loads
// little else. A run is long enough for the processor to follow, and short while blocks are few.
constexpr size_t firstRun = 8;                 // blocks
constexpr size_t lastRun = size_t{ 16 } << 10; // bytes, reached by doubling

struct FreeBlock {
   FreeBlock * next;
};

// The blocks of one thread at a time: per size a stack of released ones and a run to cut new ones
// from, and the chunk of the runs. A thread that ends leaves them to a later one.
class Blocks {
public:
   // A block of the size class.
   void * take( size_t index ) {
      SizeClass & blocks = classes_[index];
      if ( FreeBlock * const block = blocks.released ) {
         blocks.released = block->next;
         return block;
      }
      if ( blocks.at == blocks.end ) {
         startRun( blocks, index * alignment );
      }
      return std::exchange( blocks.at, blocks.at + index * alignment );
   }
   void giveBack( void * block, size_t index ) {
      FreeBlock *& released = classes_[index].released;
      released = ::new ( block ) FreeBlock{ released };
   }

   Usage usage() const {
      size_t unused = left_ + skipped_;
      for ( size_t index = 1; index < classes_.size(); ++index ) {
         unused += static_cast< size_t >( classes_[index].end - classes_[index].at );
         for ( FreeBlock const * block = classes_[index].released; block; block = block->next ) {
            unused += index * alignment;
         }
      }
      return { reserved_, reserved_ - unused };
   }

   Blocks * nextIdle = nullptr;

private:
   struct SizeClass {
      FreeBlock * released = nullptr;
      char * at = nullptr; // the unused part of the run
      char * end = nullptr;
      size_t nextRun = firstRun; // blocks
   };

   [[gnu::noinline]] void startRun( SizeClass & blocks, size_t size ) {
      if ( left_ < size ) {
         startChunk();
      }
      size_t const bytes = std::min( blocks.nextRun, left_ / size ) * size;
      if ( blocks.nextRun * size < lastRun ) {
         blocks.nextRun *= 2;
      }
      left_ -= bytes;
      blocks.at = std::exchange( at_, at_ + bytes );
      blocks.end = at_;
   }
   // The rest of the old chunk, smaller than the requested block, stays unused.
   void startChunk() {
      at_ = static_cast< char * >( ::operator new( chunk_ ) );
      skipped_ += std::exchange( left_, chunk_ );
      reserved_ += chunk_;
      chunk_ = std::min( chunk_ * 2, lastChunk );
   }

   std::array< SizeClass, pooledMax / alignment + 1 > classes_{};
   char * at_ = nullptr;
   size_t left_ = 0;
   size_t chunk_ = firstChunk;
   size_t reserved_ = 0; // bytes of all chunks
   size_t skipped_ = 0;  // of them, the rests of old ones
};

constinit Blocks firstBlocks;
constinit Blocks * idle = &firstBlocks;
constinit std::mutex idleMutex;

// The thread's blocks, once it has any. The model spares a call in a shared library.
[[gnu::tls_model( "initial-exec" )]] constinit thread_local Blocks * ofThread = nullptr;
// The thread destroys its last objects, after it left its blocks.
constinit thread_local bool isEnding = false;

Blocks & takeIdle() {
   std::lock_guard const lock( idleMutex );
   return idle ? *std::exchange( idle, idle->nextIdle ) : *new Blocks;
}

void leaveIdle( Blocks & blocks ) {
   std::lock_guard const lock( idleMutex );
   blocks.nextIdle = std::exchange( idle, &blocks );
}

// Has blocks for as long as the thread lives.
class Membership {
public:
   Membership() { ofThread = &takeIdle(); }
   Membership( Membership const & ) = delete;
   Membership & operator=( Membership const & ) = delete;
   ~Membership() {
      isEnding = true;
      leaveIdle( *std::exchange( ofThread, nullptr ) );
   }
};

// What a thread without blocks does: it takes some, at its end for this call only.
template< typename Function >
[[gnu::noinline]] auto join( Function const & function ) {
   if ( isEnding ) {
      Blocks & blocks = takeIdle();
      struct Leave {
         Blocks & blocks;
         ~Leave() { leaveIdle( blocks ); }
      } const leave{ blocks };
      return function( blocks );
   }
   thread_local Membership const membership;
   return function( *ofThread );
}

template< typename Function >
auto withBlocks( Function const & function ) {
   if ( Blocks * const blocks = ofThread ) [[likely]] {
      return function( *blocks );
   }
   return join( function );
}

size_t sizeClass( size_t bytes ) {
   return ( bytes + alignment - 1 ) / alignment;
}

} // namespace

void * allocate( size_t bytes ) {
   if ( bytes > pooledMax || bytes == 0 ) {
      return ::operator new( bytes );
   }
   return withBlocks( [&]( Blocks & blocks ) { return blocks.take( sizeClass( bytes ) ); } );
}

void release( void * block, size_t bytes ) noexcept {
   if ( bytes > pooledMax || bytes == 0 ) {
      ::operator delete( block );
      return;
   }
   try {
      withBlocks( [&]( Blocks & blocks ) { blocks.giveBack( block, sizeClass( bytes ) ); } );
   } catch ( std::bad_alloc const & ) {
      // A thread that never had blocks gets none: this one is not used again.
   }
}

Usage usage() {
   return withBlocks( []( Blocks const & blocks ) { return blocks.usage(); } );
}

} // namespace Vorn::Pool
