#include "TrafficPolicy/model/PolicyStateCpu.h"

#include "TrafficPolicy/platform/vorn/Describe.h"

namespace TrafficPolicyCli {

VORN_TYPE( PolicyStateCpu )

Vorn::Ptr< PolicyStateCpu > policyStateCpuFactory( Vorn::String name ) {
   return Vorn::create< PolicyStateCpu >( name );
}

} // namespace TrafficPolicyCli
