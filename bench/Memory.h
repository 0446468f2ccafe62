// The memory that the program has from operator new, and the number of allocations.

#pragma once

#include <cstddef>

namespace Bench {

struct Memory {
   size_t live = 0; // bytes, rounded up as the allocator does
   size_t peak = 0;
   size_t allocations = 0;
};

// Since the start of the program. A MemoryScope resets the peak to the present level.
extern Memory memory;

// Measures the growth during its lifetime. One at a time.
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
