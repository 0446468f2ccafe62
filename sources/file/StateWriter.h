// Writing a state file.

#pragma once

#include "TrafficPolicy/platform/wendo/PrintBuffer.h"
#include "sources/State.h"

namespace tpcli {

// Writes the state as a state file, one JSON object on one line: read again, it gives the same
// bytes of every show.
void formatState( wendo::PrintBuffer & buffer, State const & state );

} // namespace tpcli
