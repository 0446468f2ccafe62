// A policy's state on the interface side: its bindings are interfaces, keyed by their names.

#pragma once

#include "TrafficPolicy/model/Installation.h"
#include "TrafficPolicy/model/InterfaceStatus.h"
#include "TrafficPolicy/model/PolicyState.h"

namespace TrafficPolicyCli {

class PolicyStateInterface : public PolicyState {
   VORN_ENTITY( PolicyStateInterface, PolicyState )

   using PolicyState::PolicyState;

   VORN_ORDERED_MAP( Vorn::String, bool, configuredIntf ) // membership; stored true
   // Each interface's status, as a set of one.
   VORN_HASHED_MAP( Vorn::String, Vorn::Ptr< InterfaceStatus >, interfaceStatus )
   // Per address family.
   VORN_ORDERED_CHILDREN( PolicyMap::ClassMapMatchOption, PerAfIntfList, appliedIntf )
   VORN_ORDERED_CHILDREN( PolicyMap::ClassMapMatchOption, PerAfIntfList, failedIntf )
   VORN_HASHED_CHILDREN( PolicyMap::ClassMapMatchOption, InterfaceInstallError, installErrorColl )
};

Vorn::Ptr< PolicyStateInterface > policyStateInterfaceFactory( Vorn::String name );

} // namespace TrafficPolicyCli
