// What the command table says, as text.

#pragma once

#include "cli/CommandWalk.h"

#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

// How each command is written, commands that differ in one word as one. Not broken into lines.
std::vector< std::string > synopses();

// All of the table: what --help and help write.
std::string helpText();

// What may follow, one a line with its help, as far as it begins with this.
std::string describe( Continuation const & next, std::string_view begin );

} // namespace tpcli
