// Running commands.

#pragma once

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "cli/CommandLine.h"
#include "sources/State.h"

namespace tpcli {

// The program's exit statuses.
enum class Status : int {
   done = 0,
   failed = 1, // the state or the store could not be read or written, or the output not be written
   usage = 2,
   interrupted = 130
};

// What a command works on. It outlives the command, so that a program that is about to end need not
// take it down.
struct Workspace {
   State state;
   Vorn::Ptr< TrafficPolicy::Counter > counterStore;
   Vorn::Ptr< TrafficPolicyCli::ShowTrafficPolicyBase > show;
};

// Runs one command; its output goes to standard output. Reports what goes wrong on standard error.
Status runCommand( Options const & options, std::vector< std::string > const & words,
                   Workspace & workspace );

// Runs the commands that standard input has, one a line, with a prompt at a terminal. A line that
// fails is reported and the next one runs; returns the status of the last that failed.
Status runLines( Options const & options, Workspace & workspace );

} // namespace tpcli
