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

#pragma once

#include "TrafficPolicy/counters/TrafficPolicyCounter.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyCpu.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyInterface.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"
