// `show traffic-policy {cpu | interface} rates`: what rules and counters count in a second.

#pragma once

#include "cli/Command.h"
#include "cli/Session.h"

namespace tpcli {

// Reads the source twice, a second apart or the command's interval. Throws UsageError where it
// cannot be read twice, and what reading and writing throw.
void showRates( Session & session, Command const & command );

} // namespace tpcli
