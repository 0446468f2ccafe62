// `check`: what in a state is inconsistent, or shown nowhere.

#pragma once

#include "cli/Command.h"
#include "cli/ExitStatus.h"
#include "cli/Session.h"

namespace tpcli {

// Status::failed when it found something. What may be meant is told on standard error and changes
// no status.
Status check( Session & session, Command const & command );

} // namespace tpcli
