// `status`: which installations failed, a line a policy.

#pragma once

#include "cli/Reply.h"
#include "sources/State.h"

namespace tpcli {

// Whether one failed, in any family.
bool anyFailed( State const & state );

void writeStatus( wendo::RendererV2 & renderer, State const & state );

} // namespace tpcli
