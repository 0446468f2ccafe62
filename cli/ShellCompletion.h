// Completion in the user's shell: a short script that asks the program, so that it knows every word
// and the names in the state.

#pragma once

#include "cli/Workspace.h"

#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

// What the shell reads. Throws UsageError for a shell that there is no script for.
std::string completionScript( std::string_view shell );

// The ways to complete the last of the words, one a line, a tab and the help behind it.
std::string completeWords( std::vector< std::string > const & words, Workspace & workspace );

} // namespace tpcli
