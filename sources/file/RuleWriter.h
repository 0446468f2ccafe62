// Writing a rule of a state file.

#pragma once

#include "TrafficPolicy/platform/records/ConfigRecords.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace tpcli {

// As an element of the open list.
void addRule( wendo::RendererV2 & renderer, uint32_t sequence, Vorn::String const & name,
              PolicyMap::PolicyMapSubConfig const & config );

} // namespace tpcli
