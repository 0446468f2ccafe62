// `clear traffic-policy counters`, and what is known of the last one.

#pragma once

#include "cli/Command.h"
#include "cli/Reply.h"
#include "cli/Session.h"

namespace tpcli {

// Of all policies, or of the one that the command names. Throws UsageError where there is no place
// for a store, and what reading and writing throw.
void clearCounters( Session & session, Command const & command );

// When the last clear was, and which counters are not those any more that it found.
void writeLastClear( wendo::RendererV2 & renderer, Workspace const & workspace );

} // namespace tpcli
