#include "TrafficPolicy/model/PolicyState.h"

#include "TrafficPolicy/platform/vorn/Describe.h"

namespace TrafficPolicyCli {

VORN_TYPE( PolicyState )

Vorn::Ptr< PolicyMap::PacketDataStatus const > const &
namedCounterStatus( PolicyState const & policyState, Vorn::String const & counterName ) {
   static Vorn::Ptr< PolicyMap::PacketDataStatus const > const none;
   auto const & status = policyState.policyMapStatus();
   auto const * counterStatus = status ? status->counterStatus( counterName ) : nullptr;
   return counterStatus ? *counterStatus : none;
}

Vorn::Ptr< PolicyState > policyStateFactory( Vorn::String name ) {
   return Vorn::create< PolicyState >( name );
}

} // namespace TrafficPolicyCli
