// Large pages for the records of a large state.

#pragma once

#include <cstddef>
#include <cstdint>

namespace tpcli {

// Before a large input is read, has the heap grow by what its records will need, and while it is
// read by some dozen megabytes at once, in large pages where the system has them: to touch every
// small page first is otherwise a good part of what the reading costs. Changes how the process
// allocates, so it is for programs alone.
class LargePages {
public:
   // The input's size in bytes; 0 when it is not known.
   explicit LargePages( uint64_t size )
      : size_( size ) {}

   // So many bytes more of the input were read.
   void add( size_t bytes );

private:
   void start();

   uint64_t size_;
   uint64_t read_ = 0;
   char * done_ = nullptr; // the heap's end when it was last seen
};

} // namespace tpcli
