// What stands behind Memory.h, for measurements.

#pragma once

#include "TrafficPolicy/platform/vorn/Memory.h"

#include <cstddef>

namespace Vorn::Pool {

// What the calling thread's chunks hold, in bytes. Walks all released blocks.
struct Usage {
   size_t reserved; // of all chunks
   size_t used;     // in blocks that are allocated; less those that another thread released
};
Usage usage();

} // namespace Vorn::Pool
