// The protocol conditions of a rule, with their ports, TCP flags and ICMP types.

#pragma once

#include "TrafficPolicy/platform/records/MatchRecords.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace TrafficPolicyCli {

// In text, protocols without any condition of their own form one list; as soon as one has some,
// each stands on a line of its own with its conditions below, indented by a further step.
void renderProtocol( wendo::RendererV2 & renderer,
                     Classification::StructuredFilter const & structuredFilter, unsigned indent,
                     unsigned step, PolicyMap::ClassMapMatchOption matchOption );

} // namespace TrafficPolicyCli
