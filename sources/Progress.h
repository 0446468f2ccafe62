// How far reading has come, for someone who waits for it.

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace tpcli {

// Where standard error is a terminal, reading that takes longer than a second shows a line there,
// gone again when this goes. Elsewhere it writes nothing.
class Progress {
public:
   // The whole in bytes; 0: unknown.
   explicit Progress( uint64_t whole )
      : whole_( whole ) {}
   ~Progress();
   Progress( Progress const & ) = delete;
   Progress & operator=( Progress const & ) = delete;

   // So many bytes more were read.
   void add( size_t bytes );

private:
   using Clock = std::chrono::steady_clock;

   std::string line() const;
   // Writes the text over what the line has now.
   void show( std::string text );

   uint64_t whole_;
   uint64_t done_ = 0;
   Clock::time_point next_ = Clock::now() + std::chrono::seconds( 1 ); // when to show it again
   size_t shown_ = 0;                                                  // the line's length
};

} // namespace tpcli
