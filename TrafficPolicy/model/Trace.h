// The program's one trace facility.

#pragma once

#include "TrafficPolicy/platform/vorn/Trace.h"

namespace TrafficPolicyCli {

// Named "TrafficPolicyShowCliHelper". Level 8: entry to caching and rendering functions; 7: results
// per item; 4 and 1: summaries and anomalies.
extern constinit Vorn::TraceFacility trace;

} // namespace TrafficPolicyCli
