// Preparing the process's memory for a large state.

#pragma once

#include <cstddef>

namespace tpcli {

// Announces that about this many bytes will be allocated in small pieces. The heap then grows once,
// in large pages: touching a fresh page is otherwise a good part of what reading a large state
// costs. A hint: where the platform has no such pages it does nothing.
void expectAllocations( size_t bytes );

// Memory for one large block, in large pages where there are such; release it with std::free. Null
// when there is none.
void * allocateLarge( size_t bytes );

} // namespace tpcli
