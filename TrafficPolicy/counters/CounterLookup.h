// Counts since the last clear.
//
// Hardware counters are never reset: a clear stores their values as snapshots, and a count is the
// hardware's value minus the snapshot's. A snapshot applies only to the incarnation (unique id) of
// the counter that it was taken of; a value that went backwards is traced and reads as 0. The store
// may be null, then every count is the hardware's. All other handles are not null.

#pragma once

#include "TrafficPolicy/platform/records/StatusRecords.h"

namespace TrafficPolicyCli {

// The rule counts of one policy. Fast when all rules are visited in about the order of their
// snapshots; any order is correct. Must not outlive the store, which may be null.
class RuleSnapshots {
public:
   RuleSnapshots( TrafficPolicy::Counter const * counter, Vorn::String const & policyName );

   // Called before each rule, whether its count is read or not.
   void nextRule() { ++distance_; }
   // Packets that hit the rule.
   uint64_t packets( PolicyMap::ClassMapStatus const & classStatus );

private:
   using Snapshots = Vorn::HashMap< TrafficPolicy::CounterKey, TrafficPolicy::CounterVersion >;

   bool none_;
   Snapshots::Cursor snapshots_;
   Vorn::String policyName_;
   uint32_t distance_ = 0; // rules since the last one whose snapshot was found
};

uint64_t getRulePacketCount( Vorn::Ptr< PolicyMap::ClassMapStatus const > const & classStatus,
                             Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                             Vorn::String policyName );

// A named counter's total.
uint64_t getNamedPacketCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                              Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                              Vorn::String const & policyName );
uint64_t getNamedByteCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                            Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                            Vorn::String const & policyName );

// A named counter on one interface; asserts that the counter has the interface. The raw value where
// the counter's snapshot has no entry for it.
uint64_t
getInterfacePacketCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                         Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                         Vorn::String const & policyName, Pelx::IntfId const & intf );
uint64_t
getInterfaceByteCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                       Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                       Vorn::String const & policyName, Pelx::IntfId const & intf );

} // namespace TrafficPolicyCli
