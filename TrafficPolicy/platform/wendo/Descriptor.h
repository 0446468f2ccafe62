// An output descriptor that no write blocks on.
//
// A signal that arrives between the look for an interrupt and a write that blocks would be noticed
// at the next signal only, or never. So a write takes what the descriptor takes at once, and
// waiting is apart from it and short.

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

   // Writes what is taken at once and returns the number of bytes: 0 when a signal came first or
   // nothing is taken now. Throws std::system_error for any other error.
   size_t write( std::string_view bytes );
   // Waits until bytes are taken again, a signal comes, or a while is over.
   void await();

   // Lets a pipe hold this many bytes, so that writer and reader work side by side. A hint: what is
   // no pipe, or may not grow, stays as it is.
   void widen( size_t bytes );

private:
   enum class Kind { neverBlocks, socket, nonBlocking, blocking };

   // The same pipe or terminal with flags of its own, which make it non-blocking; -1 where that
   // cannot be had.
   int reopened() const;
   bool isReady( int timeout ) const;

   int fd_;
   int own_ = -1;
   Kind kind_;
};

// Writes a last line: to a reader that is slow, but not for one that has stalled, who gets no more
// than half a second. Errors are dropped: there is nobody left to tell.
void writeLastLine( int fd, std::string_view line ) noexcept;

} // namespace wendo
