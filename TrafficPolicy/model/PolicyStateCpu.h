// A policy's state on the CPU side: its bindings are VRFs.

#pragma once

#include "TrafficPolicy/model/Installation.h"
#include "TrafficPolicy/model/InterfaceStatus.h"
#include "TrafficPolicy/model/PolicyState.h"

namespace TrafficPolicyCli {

class PolicyStateCpu : public PolicyState {
   VORN_ENTITY( PolicyStateCpu, PolicyState )

   using PolicyState::PolicyState;

   VORN_ORDERED_MAP( L3::VrfName, bool, configuredVrf ) // membership; stored true
   // The statuses of each VRF's interfaces.
   VORN_HASHED_CHILDREN( L3::VrfName, VrfIntfStatus, vrfIntfStatus )
   // Per address family.
   VORN_ORDERED_CHILDREN( PolicyMap::ClassMapMatchOption, PerAfVrfList, appliedVrf )
   VORN_ORDERED_CHILDREN( PolicyMap::ClassMapMatchOption, PerAfVrfList, failedVrf )
   VORN_HASHED_CHILDREN( PolicyMap::ClassMapMatchOption, InstallError, installErrorColl )
};

Vorn::Ptr< PolicyStateCpu > policyStateCpuFactory( Vorn::String name );

} // namespace TrafficPolicyCli
