// What is fuzzed. Each target takes any bytes, and ends the process when something is wrong with
// what becomes of them.

#pragma once

#include <string_view>

namespace fuzz {

// A document as a source, of any of the three kinds: read, shown, checked, cleared, written.
void document( std::string_view bytes );
// A counter store, beside a state that has what it may name.
void store( std::string_view bytes );
// The arguments of the program, one a line, and a line of commands.
void commandLine( std::string_view bytes );
// Filters of lines: a line with them, and behind it what they filter.
void lineFilters( std::string_view bytes );
// What the servers of a switch answer.
void redis( std::string_view bytes );

struct Target {
   std::string_view name; // of its folder of inputs, too
   void ( *run )( std::string_view bytes );
};

inline constexpr Target targets[] = {
   { "document", document },
   { "store", store },
   { "command-line", commandLine },
   { "line-filters", lineFilters },
#ifdef TP_SONIC
   { "redis", redis },
#endif
};

} // namespace fuzz
