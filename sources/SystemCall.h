// System calls that a signal may end before they have done anything.

#pragma once

#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <cerrno>

namespace tpcli {

// The call's result, which is negative on error; made again where a signal ended it.
template< typename Call >
auto retried( Call const & call ) {
   for ( ;; ) {
      auto const result = call();
      if ( result >= 0 || errno != EINTR ) {
         return result;
      }
   }
}

// The same for a call that the user may interrupt while it waits. Throws SigIntException.
template< typename Call >
auto interruptible( Call const & call ) {
   return retried( [&] {
      wendo::interrupt::check();
      return call();
   } );
}

} // namespace tpcli
