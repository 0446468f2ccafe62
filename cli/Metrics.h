// `tpcli metrics`: a state for Prometheus, as its text format or as OpenMetrics.

#pragma once

#include "TrafficPolicy/views/RendererV2.h"
#include "sources/State.h"

namespace tpcli {

struct MetricsOptions {
   bool openMetrics = false;
   bool rules = true; // counts of rules, one series each
   double readSeconds = 0;
   double readTimestamp = 0; // of the end of the reading, seconds since 1970
};

// Counts are the hardware's: whoever collects them has a past of his own to compare with.
void writeMetrics( wendo::RendererV2 & renderer, State const & state,
                   MetricsOptions const & options );

} // namespace tpcli
