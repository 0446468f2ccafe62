#include "TrafficPolicy/model/PolicyStateInterface.h"

#include "TrafficPolicy/platform/vorn/Describe.h"

namespace TrafficPolicyCli {

VORN_TYPE( PolicyStateInterface )

Vorn::Ptr< PolicyStateInterface > policyStateInterfaceFactory( Vorn::String name ) {
   return Vorn::create< PolicyStateInterface >( name );
}

} // namespace TrafficPolicyCli
