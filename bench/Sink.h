// Where the output goes: /dev/null, or a pipe that another process reads and drops.

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
   // Before each run.
   virtual void begin() {}
   // Waits until everything that was written, so many bytes since begin(), has left the sink.
   virtual void drain( uint64_t /* bytes */ ) {}
   // When the other side saw the first byte since begin(); 0 where nobody looks.
   virtual Nanoseconds firstByte() const { return 0; }

protected:
   Sink() = default;
   int fd_ = -1;
};

std::unique_ptr< Sink > openNull();
// Starts the reading process: made before the program grows, so that the fork copies little.
std::unique_ptr< Sink > openPipe();

} // namespace Bench
