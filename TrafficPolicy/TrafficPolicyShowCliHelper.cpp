#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"

#include "TrafficPolicy/model/Trace.h"

// A program that links the static library and constructs by name alone names no class, so the
// linker would leave out the files that register them. Whoever asks the linker for this symbol gets
// every class: the declarations that this file includes refer to them.
extern "C" {
extern char const trafficPolicyTypes;
char const trafficPolicyTypes = 1;
}

namespace TrafficPolicyCli {

void traceLevelMaskIs( uint32_t mask ) {
   trace.levelMaskIs( mask );
}

void traceSinkIs( TraceSink sink ) {
   trace.sinkIs( sink );
}

} // namespace TrafficPolicyCli
