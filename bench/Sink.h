// The destination of the output: /dev/null, or a pipe that another process reads and discards.

#pragma once

#include <cstdint>
#include <memory>

namespace Bench {

using Nanoseconds = int64_t;

// The steady clock, which the processes of a machine share.
Nanoseconds now();

class Sink {
public:
   virtual ~Sink() = default;
   Sink( Sink const & ) = delete;
   Sink & operator=( Sink const & ) = delete;

   int fd() const { return fd_; }
   // Called before each run.
   virtual void begin() {}
   // Waits until all bytes written since begin(), this many, have been read.
   virtual void drain( uint64_t /* bytes */ ) {}
   // When the reader saw the first byte since begin(); 0 without a reader.
   virtual Nanoseconds firstByte() const { return 0; }

protected:
   Sink() = default;
   int fd_ = -1;
};

std::unique_ptr< Sink > openNull();
// Starts the reading process. Called before the program grows, so that the fork copies little.
std::unique_ptr< Sink > openPipe();

} // namespace Bench
