// The options of the program.

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
   std::string pager;            // a command for the shell; empty: none
   bool json = false;
   bool failFast = false;
   bool openMetrics = false;
   bool metricsRules = true;
   bool help = false;
   bool version = false;
   std::vector< std::string > command; // empty: commands come from standard input
};

// Throws UsageError.
Options parseArguments( int argc, char ** argv );

// Whether JSON is asked for, even if the arguments are wrong otherwise: errors are JSON then.
bool asksForJson( int argc, char const * const * argv );

// The levels of "8", "7,8" or "1-8". Throws UsageError.
uint32_t parseTraceLevels( std::string_view text );

} // namespace tpcli
