// The results as lines of comma-separated values, for plot.py and other tools.

#pragma once

#include "bench/Measure.h"

#include <fstream>
#include <string>

namespace Bench {

class Report {
public:
   // Writes no file when the path is empty. Throws std::runtime_error for a file that cannot be
   // written.
   explicit Report( std::string const & path );

   void add( std::string const & name, std::string const & sink, Result const & result );

private:
   std::ofstream file_;
};

} // namespace Bench
