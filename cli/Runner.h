// Running commands.

#pragma once

#include "cli/Command.h"
#include "cli/ExitStatus.h"
#include "cli/Session.h"
#include "cli/Words.h"

namespace tpcli {

// Runs one command; its output goes to standard output. Reports what goes wrong.
Status runCommand( Session & session, CommandText const & text, bool isLine );

// Runs the commands that standard input has, one a line, with a prompt at a terminal. A line that
// fails is reported and the next one runs, unless the first failure is to end it; returns the
// status of the last that failed.
Status runLines( Session & session );

} // namespace tpcli
