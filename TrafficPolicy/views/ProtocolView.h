// The protocol conditions of a rule, with their ports, TCP flags and ICMP types.

#pragma once

#include "TrafficPolicy/platform/records/MatchRecords.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace TrafficPolicyCli {

// In text, protocols form one list when none has a condition of its own; otherwise each has a line
// with its conditions below, indented by a further step.
void renderProtocol( wendo::RendererV2 & renderer,
                     Classification::StructuredFilter const & structuredFilter, unsigned indent,
                     unsigned step, PolicyMap::ClassMapMatchOption matchOption );

} // namespace TrafficPolicyCli
