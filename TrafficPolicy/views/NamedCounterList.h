// The line of a policy's declared counters.

#pragma once

#include "TrafficPolicy/model/PolicyState.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace TrafficPolicyCli {

// In name order, whether or not a rule counts into them; nothing for a policy without any.
void renderNamedCounter( wendo::RendererV2 & renderer, PolicyState const & policyState );

} // namespace TrafficPolicyCli
