// The user's interrupt: asked for at any moment, noticed at the next safe point.

#pragma once

#include <csignal>
#include <exception>

namespace wendo {

// Thrown when the user interrupts a command. What was written stays written.
class SigIntException : public std::exception {
public:
   char const * what() const noexcept override;
};

namespace interrupt {

extern volatile std::sig_atomic_t requested;

// Asks for an interrupt. May be called from a signal handler, which should be installed without
// SA_RESTART so that a blocked write notices.
void request() noexcept;

// Throws SigIntException if an interrupt was asked for, and takes the request as served.
void serve();

// How many interrupts were served: tells a caller whose callee caught the exception.
unsigned served() noexcept;

inline void check() {
   if ( requested ) [[unlikely]] {
      serve();
   }
}

} // namespace interrupt

} // namespace wendo
