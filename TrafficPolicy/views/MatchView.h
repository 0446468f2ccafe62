// The match conditions of a rule.

#pragma once

#include "TrafficPolicy/model/PolicyState.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace TrafficPolicyCli {

// Writes the conditions of one rule, in a fixed order; text lines are indented by this many spaces.
// Nothing for a rule without a structured filter. Asserts that no prefix list is beside the prefix
// field-sets of the same side.
void renderMatches( wendo::RendererV2 & renderer, PolicyState const & policyState,
                    PolicyMap::ClassMapMatch const & classMapMatch, unsigned indent );

} // namespace TrafficPolicyCli
