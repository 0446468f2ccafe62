// A state as the text of a state file.

#pragma once

#include "TrafficPolicy/platform/wendo/PrintBuffer.h"
#include "sources/State.h"

namespace tpcli {

// One line. Reading it gives records that every show writes the same bytes from, unless a name is
// not UTF-8, which no JSON document can hold.
void formatState( wendo::PrintBuffer & buffer, State const & state );

} // namespace tpcli
