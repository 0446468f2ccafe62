// The user's interrupt: requested at any moment, served at the next safe point.

#pragma once

#include "TrafficPolicy/platform/Export.h"

#include <exception>

namespace wendo {

// Thrown when the user interrupts a command. What was written stays written.
class TRAFFIC_POLICY_API SigIntException : public std::exception {
public:
   char const * what() const noexcept override;
};

namespace interrupt {

// An atomic flag that a signal handler may set. Not std::atomic: its header is a third as long as
// all that the public headers include.
class Flag {
public:
   operator bool() const noexcept { return __atomic_load_n( &isSet_, __ATOMIC_RELAXED ); }
   Flag & operator=( bool isSet ) noexcept {
      __atomic_store_n( &isSet_, isSet, __ATOMIC_SEQ_CST );
      return *this;
   }

private:
   static_assert( __atomic_always_lock_free( sizeof( bool ), nullptr ) );
   bool isSet_ = false;
};

// Of the process: the first thread that comes to a safe point serves it.
TRAFFIC_POLICY_API extern Flag requested;

// Requests an interrupt. Async-signal-safe. The signal handler is installed without SA_RESTART, so
// that waiting ends.
TRAFFIC_POLICY_API void request() noexcept;

// Takes the request as served and throws SigIntException.
TRAFFIC_POLICY_API void serve();

// Interrupts that this thread has served so far. A caller compares it before and after a call that
// catches the exception.
TRAFFIC_POLICY_API unsigned served() noexcept;

// Serves a request, if there is one. Called in every loop whose length the records determine.
inline void check() {
   if ( requested ) [[unlikely]] {
      serve();
   }
}

} // namespace interrupt

} // namespace wendo
