// How the begin of a command line may go on: TAB, ?, and the completion of shells.

#pragma once

#include "cli/CommandWalk.h"
#include "cli/Workspace.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

// Ways to complete the last word of a line.
struct Completions {
   static constexpr size_t namesMax = 200;

   std::string begin;                // of the word, as it is meant
   size_t beginsAt = 0;              // in the line, in bytes
   Continuation next;                // what may stand there
   std::string problem;              // why nothing can, or empty
   std::vector< std::string > words; // that begin so, in order; names of the state, too
   bool cut = false;                 // there are more names
   std::string common;               // what all begin with, those that were cut off, too
};

// Of the line up to the cursor. Where names may stand they are read from the source, if it changed.
Completions complete( CommandText text, bool isLine, Workspace & workspace );

// The same for a list: words with their help, then names.
std::string describe( Completions const & completions );

} // namespace tpcli
