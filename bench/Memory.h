// What the program holds from operator new, and how often it asked.

#pragma once

#include <cstddef>

namespace Bench {

struct Memory {
   size_t live = 0; // bytes, with what the allocator rounds up
   size_t peak = 0;
   size_t allocations = 0;
};

// Counted since the program started; whoever measures a call sets the peak to the present level.
extern Memory memory;

// The growth during its life.
class MemoryScope {
public:
   MemoryScope()
      : start_( memory ) {
      memory.peak = memory.live;
   }

   size_t peakAbove() const { return memory.peak - start_.live; }
   size_t allocations() const { return memory.allocations - start_.allocations; }

private:
   Memory start_;
};

} // namespace Bench
