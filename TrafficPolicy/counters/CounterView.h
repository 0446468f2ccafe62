// The counter views: per policy, its named counters and the counts of rules that count for
// themselves.

#pragma once

#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "TrafficPolicy/views/RendererV2.h"
#include "TrafficPolicy/views/Selection.h"

namespace TrafficPolicyCli {

// Writes the selected policies inside the open root.
void renderPolicyCounters( wendo::RendererV2 & renderer, Selection const & selection,
                           bool countersPerInterface );

// Writes how the hardware keeps counters; nothing where that is unknown.
void renderCounterGranularity( wendo::RendererV2 & renderer,
                               TrafficPolicy::CounterGranularity granularity );

} // namespace TrafficPolicyCli
