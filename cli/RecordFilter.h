// Taking policies and rules out of a state before it is shown.

#pragma once

#include "cli/Command.h"
#include "sources/State.h"

namespace tpcli {

// The part of the state that the command's filters leave; the state itself where it has none.
// Counts are those since the snapshots in the store, which may be null.
State filtered( State const & state, Vorn::Ptr< TrafficPolicy::Counter const > const & store,
                Command const & command );

} // namespace tpcli
