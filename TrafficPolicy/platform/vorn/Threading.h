// The framework's thread-safe-pointer switch. Counts are plain integers by default; a process that
// shares entities between threads turns the switch on before it starts the second thread, and
// counting becomes atomic.

#pragma once

#include <atomic>

namespace Vorn {

// Off at start. Not itself synchronised: set it while the process still has one thread.
inline bool threadSafePointers = false;

// Adds to a counter under the switch's rule and returns the new value.
template< typename Number >
inline Number countAdd( Number & counter, Number amount ) {
   if ( threadSafePointers ) [[unlikely]] {
      return std::atomic_ref( counter ).fetch_add( amount, std::memory_order_acq_rel ) + amount;
   }
   counter += amount;
   return counter;
}

// The counterpart of countAdd.
template< typename Number >
inline Number countSub( Number & counter, Number amount ) {
   if ( threadSafePointers ) [[unlikely]] {
      return std::atomic_ref( counter ).fetch_sub( amount, std::memory_order_acq_rel ) - amount;
   }
   counter -= amount;
   return counter;
}

} // namespace Vorn
