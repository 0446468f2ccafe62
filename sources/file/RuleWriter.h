// A rule as an object of a state file.

#pragma once

#include "TrafficPolicy/platform/records/ConfigRecords.h"

namespace wendo {
class RendererV2;
}

namespace tpcli {

// The rule of this name and number, in a list that is open.
void addRule( wendo::RendererV2 & renderer, PolicyMap::PolicyMapSubConfig const & policy,
              uint32_t sequence, Vorn::String const & name );

} // namespace tpcli
