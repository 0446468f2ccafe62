// Makes the records that the shows read: one policy on the CPU in three VRFs and on 48 interfaces,
// with its counters, in the order in which an adapter of the state database makes them.

#pragma once

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "bench/PlainRules.h"

#include <string_view>
#include <vector>

namespace Bench {

inline constexpr std::string_view policyName = "filters";

// What the factories of the show objects take.
struct Inputs {
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > config;
   Vorn::Ptr< TrafficPolicy::Status const > status;
   Vorn::Ptr< TrafficPolicy::Counter const > counter; // an empty store
   Vorn::Ptr< PolicyMap::VrfConfig const > vrfConfig;
   Vorn::Ptr< Ip::AllVrfConfig const > allVrfConfig;
   Vorn::Ptr< L3::Intf::StatusDir const > l3Status;
   Vorn::Ptr< PolicyMap::IntfConfig const > intfConfig;
   Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus const > intfParamStatus;
};

struct BuildOptions {
   // Names are interned: a rule has one text block in configuration and status. Off, the status
   // side has blocks of its own.
   bool sharedNames = true;
   // The status lists its rules in an order of its own.
   bool shuffledStatus = false;
   // The records of neighbouring rules are far apart in memory, as after years of changes.
   bool scatteredRecords = false;
};

Inputs buildPolicy( std::vector< PlainRule > const & rules, BuildOptions const & options );

} // namespace Bench
