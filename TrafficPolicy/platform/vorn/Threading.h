// What threads may do.
//
// Threads whose objects are separate need nothing: memory and accounting are safe by themselves. An
// object is separate when no other thread has it or anything that it refers to, its strings
// included: copying a handle or a string counts. Threads that share entities or strings, if only to
// read them, need the thread-safe-pointer switch: it makes the counts of references atomic.
// Changing a shared entity needs the caller's lock besides.

#pragma once

#include "TrafficPolicy/platform/Export.h"

#if __has_include( <sys/single_threaded.h> )
#include <sys/single_threaded.h>
#endif

namespace Vorn {

// Off at start. Not itself synchronised: set it while the process still has one thread.
TRAFFIC_POLICY_API inline bool threadSafePointers = false;

// True while the process certainly has one thread.
inline bool isSingleThreaded() {
#if __has_include( <sys/single_threaded.h> )
   return __libc_single_threaded;
#else
   return false;
#endif
}

// Adds to a counter under the switch's rule and returns the new value.
template< typename Number >
inline Number countAdd( Number & counter, Number amount ) {
   if ( threadSafePointers ) [[unlikely]] {
      return __atomic_add_fetch( &counter, amount, __ATOMIC_ACQ_REL );
   }
   counter += amount;
   return counter;
}

// The counterpart of countAdd.
template< typename Number >
inline Number countSub( Number & counter, Number amount ) {
   if ( threadSafePointers ) [[unlikely]] {
      return __atomic_sub_fetch( &counter, amount, __ATOMIC_ACQ_REL );
   }
   counter -= amount;
   return counter;
}

} // namespace Vorn
