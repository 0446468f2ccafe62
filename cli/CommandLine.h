// What the user asks for: the program's options and the command's words.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

struct Options {
   std::string statePath;        // what the source is looked up by; "-" is standard input
   std::string counterStorePath; // empty: the source's own
   uint32_t traceLevels = 0;     // bit n: level n
   bool json = false;
   bool help = false;
   bool version = false;
   std::vector< std::string > command; // empty: commands come from standard input
};

// Throws UsageError.
Options parseArguments( int argc, char ** argv );

// The levels of "8", "7,8" or "1-8". Throws UsageError.
uint32_t parseTraceLevels( std::string_view text );

enum class Verb { showCpu, showInterface, clear, types };

struct Command {
   Verb verb = Verb::showCpu;
   std::string name; // of the policy, or of the class for Verb::types; empty: all
   bool summary = false;
   bool detail = false;
   bool errors = false;
   bool counters = false;
   bool perInterface = false;
   bool json = false;
};

// Throws UsageError.
Command parseCommand( std::vector< std::string > words );

// The words of a line; quotes ("...") keep spaces in a word, a backslash takes the next character
// as it is. Throws UsageError for an open quote.
std::vector< std::string > splitLine( std::string_view line );

extern char const usageText[];

} // namespace tpcli
