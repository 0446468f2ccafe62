// The user's interrupt: requested at any moment, served at the next safe point.

#pragma once

#include <atomic>
#include <exception>

namespace wendo {

// Thrown when the user interrupts a command. What was written stays written.
class SigIntException : public std::exception {
public:
   char const * what() const noexcept override;
};

namespace interrupt {

// Of the process: the first thread that comes to a safe point serves it.
extern std::atomic< bool > requested;
static_assert( std::atomic< bool >::is_always_lock_free, "a signal handler sets it" );

// Requests an interrupt. Async-signal-safe. The signal handler is installed without SA_RESTART, so
// that waiting ends.
void request() noexcept;

// Takes the request as served and throws SigIntException.
void serve();

// Interrupts that this thread has served so far. A caller compares it before and after a call that
// catches the exception.
unsigned served() noexcept;

// Serves a request, if there is one. Called in every loop whose length the records determine.
inline void check() {
   if ( requested.load( std::memory_order_relaxed ) ) [[unlikely]] {
      serve();
   }
}

} // namespace interrupt

} // namespace wendo
