#include "sources/Progress.h"

#include <unistd.h>

#include <algorithm>

namespace tpcli {

namespace {

constexpr std::chrono::milliseconds interval( 100 );
constexpr uint64_t megabyte = 1'000'000;

} // namespace

Progress::~Progress() {
   if ( shown_ > 0 ) {
      show( "" );
   }
}

void Progress::add( size_t bytes ) {
   done_ += bytes;
   if ( auto const now = Clock::now(); now >= next_ ) {
      bool const terminal = ::isatty( STDERR_FILENO ) != 0;
      next_ = terminal ? now + interval : Clock::time_point::max();
      if ( terminal ) {
         show( line() );
      }
   }
}

std::string Progress::line() const {
   std::string const done = std::to_string( done_ / megabyte );
   std::string const whole = std::to_string( whole_ / megabyte );
   return "reading: " + done + ( done_ <= whole_ ? " of " + whole : "" ) + " MB";
}

void Progress::show( std::string text ) {
   size_t const size = text.size();
   // The cursor stays at the line's begin, so that whatever is written next stands there.
   text = "\r" + text + std::string( shown_ > size ? shown_ - size : 0, ' ' ) + "\r";
   shown_ = size;
   // A line that cannot be written is no reason to stop.
   static_cast< void >( ::write( STDERR_FILENO, text.data(), text.size() ) );
}

} // namespace tpcli
