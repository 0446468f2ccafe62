// The records that a source fills: what the shows and the clear command work on.

#pragma once

#include "TrafficPolicy/platform/records/ConfigRecords.h"
#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "TrafficPolicy/platform/vorn/Create.h"

namespace tpcli {

struct State {
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig > config =
      Vorn::create< TrafficPolicy::TrafficPolicyConfig >();
   Vorn::Ptr< PolicyMap::VrfConfig > vrfConfig = Vorn::create< PolicyMap::VrfConfig >();
   Vorn::Ptr< PolicyMap::IntfConfig > intfConfig = Vorn::create< PolicyMap::IntfConfig >();

   Vorn::Ptr< TrafficPolicy::Status > status = Vorn::create< TrafficPolicy::Status >();
   Vorn::Ptr< Ip::AllVrfConfig > allVrfConfig = Vorn::create< Ip::AllVrfConfig >();
   Vorn::Ptr< L3::Intf::StatusDir > l3IntfStatusDir = Vorn::create< L3::Intf::StatusDir >();
   // Null where the source has no counter granularity.
   Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus > policyParamStatus;
};

} // namespace tpcli
