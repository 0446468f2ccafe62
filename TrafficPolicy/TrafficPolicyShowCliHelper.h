// The library's one public header: the factories of the show objects and of clearing.
//
//    auto show = TrafficPolicyCli::showTrafficPolicyCpuFactory( config, status, counters, "",
//    false,
//                                                               false, false, false, false,
//                                                               vrfs, allVrfs, l3Interfaces );
//    show->render( STDOUT_FILENO, 1, 1 );
//
// The records that it reads are filled by the caller: platform/records.

#pragma once

#include "TrafficPolicy/counters/TrafficPolicyCounter.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyCpu.h"
#include "TrafficPolicy/engine/ShowTrafficPolicyInterface.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"
