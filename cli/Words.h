// The words of a command line, and where in the line they stand.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

struct Word {
   std::string text;
   size_t begin = 0; // in the line, in bytes
   size_t end = 0;
   bool mayPipe = false; // begins with a | that no quote or backslash makes part of a name
};

struct CommandText {
   std::string line;
   std::vector< Word > words;
   bool openQuote = false; // the last word's quote is not closed
};

// The words of a line. Quotes ("..." or '...') keep spaces in a word; a backslash takes the next
// character as it is, but in single quotes. A comment begins with # at the begin of a word, or with
// ! at the begin of the line.
CommandText splitLine( std::string line );

// The arguments of the program as words, and the line that they make, quoted where that is needed.
CommandText joinArguments( std::vector< std::string > const & arguments );

// The word as it must stand in a line.
std::string quotedWord( std::string_view word );

} // namespace tpcli
