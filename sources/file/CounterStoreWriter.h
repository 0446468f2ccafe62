// A counter store as JSON.

#pragma once

#include "TrafficPolicy/platform/records/CounterRecords.h"
#include "TrafficPolicy/platform/wendo/PrintBuffer.h"

namespace tpcli {

// One line, entries in the store's order.
void formatCounterStore( wendo::PrintBuffer & buffer, TrafficPolicy::Counter const & store );

} // namespace tpcli
