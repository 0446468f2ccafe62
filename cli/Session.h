// What a run of the program has: its options, where it reports, and what the last command read.

#pragma once

#include "cli/CommandLine.h"
#include "cli/Report.h"
#include "cli/Workspace.h"

namespace tpcli {

struct Session {
   Options const & options;
   Report report;
   Workspace workspace;
   bool leaving = false; // a command asked for the end
};

} // namespace tpcli
