// Counts since the last clear.
//
// Hardware counters are never reset: a clear stores their values as snapshots, and a count is what
// the hardware says less the snapshot. A snapshot applies only to the incarnation of the counter
// that it was taken of; a value that went backwards reads as 0. Without a store every count is the
// hardware's. Nothing here writes.

#pragma once

#include "TrafficPolicy/platform/records/StatusRecords.h"

namespace TrafficPolicyCli {

// The rule counts of one policy. Rules are expected in about the order of their snapshots, none of
// them left out; any order is right. Must not outlive the store.
class RuleSnapshots {
public:
   RuleSnapshots( TrafficPolicy::Counter const * counter, Vorn::String const & policyName );

   // Before each rule, whether its count is asked for or not.
   void nextRule() { ++distance_; }
   // Packets that hit the rule.
   uint64_t packets( PolicyMap::ClassMapStatus const & classStatus );

private:
   using Snapshots = Vorn::HashMap< TrafficPolicy::CounterKey, TrafficPolicy::CounterVersion >;

   bool none_;
   Snapshots::Cursor snapshots_;
   TrafficPolicy::CounterKey key_;
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

// A named counter on one interface, which must be one that the counter has. The raw value where the
// counter's snapshot has no entry for the interface.
uint64_t
getInterfacePacketCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                         Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                         Vorn::String const & policyName, Pelx::IntfId const & intf );
uint64_t
getInterfaceByteCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                       Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                       Vorn::String const & policyName, Pelx::IntfId const & intf );

} // namespace TrafficPolicyCli
