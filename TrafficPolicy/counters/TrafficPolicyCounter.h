// `clear traffic-policy counters`.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"

namespace TrafficPolicyCli {

// Clears by storing a snapshot of every counter; the hardware's counts stay as they are. Made for
// one command; the only writer of the counter store.
class TRAFFIC_POLICY_API TrafficPolicyCounter : public Vorn::PtrInterface {
   VORN_ENTITY( TrafficPolicyCounter, Vorn::PtrInterface )

   // Asserted by clearCounter, not at construction.
   VORN_INPUT( Vorn::Ptr< PolicyMap::PolicyMapTypeStatus const >, status ) // not null
   VORN_INPUT( Vorn::Ptr< TrafficPolicy::Counter >, counter )              // the store, not null

   TrafficPolicyCounter( Vorn::Ptr< PolicyMap::PolicyMapTypeStatus const > const & status,
                         Vorn::Ptr< TrafficPolicy::Counter > const & counter )
      : status_( status )
      , counter_( counter ) {}

   // Takes a snapshot of every counter of every policy, stamps the store with the time, and removes
   // the snapshots of rules, counters and interfaces that no longer exist. Per-interface counts are
   // stored only where the status keeps counters per interface. Throws wendo::SigIntException, with
   // the store partly updated.
   void clearCounter();

private:
   void snapshotNamedCounters( PolicyMap::PolicyMapStatus const & policy );
   void snapshotInterfaces( TrafficPolicy::NamedCounterVersion & snapshot,
                            PolicyMap::PacketDataStatus const & counterStatus );
   void snapshotRules( PolicyMap::PolicyMapStatus const & policy );
   void removeStaleRules();
   void removeStaleNamedCounters();
};

TRAFFIC_POLICY_API Vorn::Ptr< TrafficPolicyCounter >
trafficPolicyCounterFactory( Vorn::Ptr< PolicyMap::PolicyMapTypeStatus const > const & status,
                             Vorn::Ptr< TrafficPolicy::Counter > const & counter );

} // namespace TrafficPolicyCli
