// Filters of a reply's lines: | include, exclude, begin, count.

#pragma once

#include "cli/Command.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

// Takes a reply in pieces of any size and gives what passes. Holds no more than a line of it.
class LineFilters {
public:
   // In turn; the last may be a count.
   explicit LineFilters( std::vector< LineFilter > const & filters );

   // Appends what passes of the text and of what was held from the one before.
   void take( std::string_view text, std::string & passed );
   // Appends what is left at the end: a line without its end, and the count.
   void end( std::string & passed );

private:
   struct Stage {
      LineFilter filter;
      bool begun = false; // for | begin
   };
   void takeLine( std::string_view line, std::string & passed );
   static bool passes( Stage & stage, std::string_view line );

   std::vector< Stage > stages_;
   bool counts_ = false;
   uint64_t count_ = 0;
   std::string held_; // the begin of a line
};

} // namespace tpcli
