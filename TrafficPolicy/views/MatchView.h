// The match conditions of a rule.

#pragma once

#include "TrafficPolicy/model/PolicyState.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace TrafficPolicyCli {

// Writes the conditions of one rule, in a fixed order, each text line indented by so many spaces.
// Nothing for a rule without a structured filter.
void renderMatches( wendo::RendererV2 & renderer, PolicyState const & policyState,
                    PolicyMap::ClassMapMatch const & classMapMatch, unsigned indent );

} // namespace TrafficPolicyCli
