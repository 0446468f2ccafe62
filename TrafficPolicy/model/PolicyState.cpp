#include "TrafficPolicy/model/PolicyState.h"

#include "TrafficPolicy/platform/vorn/Describe.h"

namespace TrafficPolicyCli {

VORN_TYPE( PolicyState )

Vorn::Ptr< PolicyState > policyStateFactory( Vorn::String name ) {
   return Vorn::create< PolicyState >( name );
}

} // namespace TrafficPolicyCli
