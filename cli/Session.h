// What a run of the program has: its options, where it reports, and what the last command read.

#pragma once

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "cli/CommandLine.h"
#include "cli/Report.h"
#include "sources/State.h"

namespace tpcli {

// What a command works on. It outlives the command, so that a program that is about to end need not
// take it down.
struct Workspace {
   State state;
   Vorn::Ptr< TrafficPolicy::Counter > counterStore;
   Vorn::Ptr< TrafficPolicyCli::ShowTrafficPolicyBase > show;
};

struct Session {
   Options const & options;
   Report report;
   Workspace workspace;
   bool leaving = false; // a command asked for the end
};

} // namespace tpcli
