// The library's one public header: the factories of the show objects and of clearing.
//
//    using namespace TrafficPolicyCli;
//    auto show = showTrafficPolicyCpuFactory(
//       config, status, counters, "", false, false, false, false, false,
//       vrfConfig, allVrfConfig, l3IntfStatusDir );
//    show->render( STDOUT_FILENO, 1, 1 ); // 1 text, 2 JSON
//
// The caller fills the records of platform/records; show objects keep them alive and only read
// them. ShowTrafficPolicyBase.h and its subclasses say which handles may be null.
//
// docs/library.md describes the whole, examples/minimal.cpp is a program.

#pragma once

#include "TrafficPolicy/counters/TrafficPolicyCounter.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyCpu.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyInterface.h"
#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <cstdint>
#include <string_view>

namespace Vorn {
class TraceFacility;
}

namespace TrafficPolicyCli {

// The library's diagnostics for developers. Bit n of the mask enables level n: 8, entry to caching
// and rendering functions; 7, results per item; 4 and 1, summaries and anomalies. All are off at
// start. Not synchronised: set while no other thread uses the library.
TRAFFIC_POLICY_API void traceLevelMaskIs( uint32_t mask );

// Takes each message of an enabled level, without a line's end, and the function that it comes
// from.
using TraceSink = void ( * )( Vorn::TraceFacility const & facility, int level,
                              std::string_view function, std::string_view text );

// Where messages go, not null. At start: lines on standard error.
TRAFFIC_POLICY_API void traceSinkIs( TraceSink sink );

} // namespace TrafficPolicyCli
