// Where the reply of a command goes: to standard output, through line filters and to a pager.

#pragma once

#include "cli/Command.h"

#include <functional>
#include <string>
#include <vector>

namespace tpcli {

struct OutputPath {
   std::vector< LineFilter > filters;
   std::string head;  // before the reply, and
   std::string tail;  // after it, in place of its last line break; empty: as it is
   std::string pager; // the command for it; empty, or no terminal: none
};

// Calls what writes the reply with the descriptor to write to, and waits until all is written.
// Filters and pager are processes beside ours, so that the reply is never held as a whole. Throws
// std::system_error when the output cannot be written; leaving the pager early is no error.
void writeOutput( OutputPath const & path, std::function< void( int fd ) > const & reply );

} // namespace tpcli
