// An output descriptor that no write blocks on.
//
// A signal between the check for an interrupt and a blocking write would go unnoticed until the
// next signal. So a write hands over what the descriptor takes at once, and waiting is a separate,
// bounded call.

#pragma once

#include <cstddef>
#include <string_view>

namespace wendo {

class Descriptor {
public:
   // The descriptor stays the caller's, and its file status flags as they are: other processes may
   // share them.
   explicit Descriptor( int fd );
   ~Descriptor();
   Descriptor( Descriptor const & ) = delete;
   Descriptor & operator=( Descriptor const & ) = delete;

   // Writes what the descriptor takes at once and returns the number of bytes: 0 after a signal or
   // when it takes nothing now. Throws std::system_error for any other error.
   size_t write( std::string_view bytes );
   // Waits until the descriptor takes bytes, a signal comes, or 100 ms have passed.
   void await();

   // Lets a pipe hold this many bytes, so that writer and reader work in parallel. A hint: anything
   // but a pipe, and a pipe that may not grow, stays as it is.
   void widen( size_t bytes );

private:
   enum class Kind { neverBlocks, socket, nonBlocking, blocking };

   // The same pipe or terminal, opened again with non-blocking status flags of its own; -1 where
   // that fails.
   int reopened() const;
   bool isReady( int timeout ) const;

   int fd_;
   int own_ = -1;
   Kind kind_ = Kind::neverBlocks;
};

// Writes the last line of a command, within half a second, so that a stalled reader cannot keep it.
// Errors are ignored.
void writeLastLine( int fd, std::string_view line ) noexcept;

} // namespace wendo
