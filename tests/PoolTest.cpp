// Blocks of memory: none overlaps another, and released ones are used again.

#include "TrafficPolicy/platform/vorn/Memory.h"
#include "tests/Support.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>
#include <vector>

namespace {

struct Block {
   unsigned char * bytes;
   size_t size;
   unsigned char fill;

   bool isIntact() const {
      return std::all_of( bytes, bytes + size, [&]( unsigned char byte ) { return byte == fill; } );
   }
};

Block newBlock( test::Random & random ) {
   // Around the largest size that is pooled, and far beyond it.
   size_t const size = random.oneIn( 50 ) ? random.below( 5000 ) : random.below( 270 );
   Block const block{ static_cast< unsigned char * >( Vorn::Pool::allocate( size ) ), size,
                      static_cast< unsigned char >( random() ) };
   EXPECT_EQ( reinterpret_cast< uintptr_t >( block.bytes ) % Vorn::Pool::alignment, 0u );
   std::memset( block.bytes, block.fill, size );
   return block;
}

TEST( Pool, BlocksDoNotOverlap ) {
   test::Random random( 9 );
   std::vector< Block > blocks;
   for ( unsigned i = 0; i < 100'000; ++i ) {
      // Grows to some thousand blocks and shrinks again.
      if ( blocks.empty() || random.below( 100 ) < ( i % 20'000 < 10'000 ? 60u : 40u ) ) {
         blocks.push_back( newBlock( random ) );
         continue;
      }
      std::swap( blocks.back(), blocks[random.below( static_cast< unsigned >( blocks.size() ) )] );
      ASSERT_TRUE( blocks.back().isIntact() );
      Vorn::Pool::release( blocks.back().bytes, blocks.back().size );
      blocks.pop_back();
   }
   for ( Block const & block : blocks ) {
      ASSERT_TRUE( block.isIntact() );
      Vorn::Pool::release( block.bytes, block.size );
   }
}

#ifndef __SANITIZE_ADDRESS__ // which keeps released blocks back
TEST( Pool, ReleasedBlocksServeTheirSizeAgain ) {
   std::unordered_set< void * > places;
   for ( unsigned round = 0; round < 1000; ++round ) {
      std::vector< void * > blocks;
      for ( size_t size = 1; size <= 256; ++size ) {
         blocks.push_back( Vorn::Pool::allocate( size ) );
         places.insert( blocks.back() );
      }
      for ( size_t size = 1; size <= 256; ++size ) {
         Vorn::Pool::release( blocks[size - 1], size );
      }
   }
   EXPECT_EQ( places.size(), 256u );
}
#endif

} // namespace
