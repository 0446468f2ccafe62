#include "TrafficPolicy/counters/TrafficPolicyCounter.h"

#include "TrafficPolicy/platform/vorn/Clock.h"
#include "TrafficPolicy/platform/vorn/Describe.h"

#include <vector>

namespace TrafficPolicyCli {

VORN_TYPE( TrafficPolicyCounter )

namespace {

using PolicyMap::PacketDataStatus;
using PolicyMap::PolicyMapStatus;
using TrafficPolicy::CounterKey;
using TrafficPolicy::NamedCounterKey;
using TrafficPolicy::NamedCounterVersion;

// The policy's status, or null when the policy is gone. Remembers the last one: snapshots of a
// policy stand together.
class PolicyLookup {
public:
   explicit PolicyLookup( PolicyMap::PolicyMapTypeStatus const & status )
      : status_( status ) {}

   PolicyMapStatus const * find( Vorn::String const & name ) {
      if ( !asked_ || !name.same( name_ ) ) {
         auto const * policy = status_.policyMapStatus( name );
         found_ = policy ? policy->get() : nullptr;
         name_ = name;
         asked_ = true;
      }
      return found_;
   }

private:
   PolicyMap::PolicyMapTypeStatus const & status_;
   Vorn::String name_;
   PolicyMapStatus const * found_ = nullptr;
   bool asked_ = false;
};

} // namespace

void TrafficPolicyCounter::clearCounter() {
   for ( auto const & [name, policy] : status()->policyMapStatus() ) {
      snapshotNamedCounters( *policy );
      snapshotRules( *policy );
   }
   counter()->timestampIs( Vorn::currentTime() );
   removeStaleRules();
   removeStaleNamedCounters();
}

void TrafficPolicyCounter::snapshotNamedCounters( PolicyMapStatus const & policy ) {
   bool const perInterface = status()->perIntfCounting();
   for ( auto const & [name, counterStatus] : policy.counterStatus() ) {
      NamedCounterKey const key{ { policy.name(), name } };
      NamedCounterVersion const * old = counter()->namedSnapshot( key );
      if ( old && !( old->uniqueId() == counterStatus->uniqueId() ) ) {
         counter()->namedSnapshotDel( key );
      }
      NamedCounterVersion & snapshot = counter()->namedSnapshotIs( key, counterStatus->uniqueId() );
      if ( perInterface ) {
         snapshotInterfaces( snapshot, *counterStatus );
      }
      snapshot.totalCountIs( counterStatus->total() );
   }
}

void TrafficPolicyCounter::snapshotInterfaces( NamedCounterVersion & snapshot,
                                               PacketDataStatus const & counterStatus ) {
   for ( auto const & [intf, data] : counterStatus.intfCountData() ) {
      PolicyMap::IntfCountData const * old = snapshot.perIntfCount( intf );
      if ( old && !( old->uniqueId() == data->uniqueId() ) ) {
         snapshot.perIntfCountDel( intf );
      }
      snapshot.perIntfCountIs( intf, data->uniqueId() ).countDataIs( data->countData() );
   }
}

void TrafficPolicyCounter::snapshotRules( PolicyMapStatus const & policy ) {
   counter()->snapshotReserve( policy.cmap().size() );
   for ( auto const & [name, classStatus] : policy.cmap() ) {
      counter()->snapshotIs( CounterKey{ { policy.name(), name } },
                             { classStatus->uniqueId(), classStatus->packetCount() } );
   }
}

void TrafficPolicyCounter::removeStaleRules() {
   PolicyLookup policies( *status() );
   std::vector< CounterKey > stale;
   for ( auto const & [key, snapshot] : counter()->snapshot() ) {
      PolicyMapStatus const * policy = policies.find( key.policyName );
      if ( !policy || !policy->cmap( key.name ) ) {
         stale.push_back( key );
      }
   }
   for ( CounterKey const & key : stale ) {
      counter()->snapshotDel( key );
   }
}

void TrafficPolicyCounter::removeStaleNamedCounters() {
   PolicyLookup policies( *status() );
   std::vector< NamedCounterKey > stale;
   for ( auto const & [key, snapshot] : counter()->namedSnapshot() ) {
      PolicyMapStatus const * policy = policies.find( key.policyName );
      auto const * counterStatus = policy ? policy->counterStatus( key.name ) : nullptr;
      if ( !counterStatus ) {
         stale.push_back( key );
         continue;
      }
      std::vector< Pelx::IntfId > gone;
      for ( auto const & [intf, data] : snapshot->perIntfCount() ) {
         if ( !( *counterStatus )->intfCountData( intf ) ) {
            gone.push_back( intf );
         }
      }
      for ( Pelx::IntfId const & intf : gone ) {
         snapshot->perIntfCountDel( intf );
      }
   }
   for ( NamedCounterKey const & key : stale ) {
      counter()->namedSnapshotDel( key );
   }
}

Vorn::Ptr< TrafficPolicyCounter >
trafficPolicyCounterFactory( Vorn::Ptr< PolicyMap::PolicyMapTypeStatus const > const & status,
                             Vorn::Ptr< TrafficPolicy::Counter > const & counter ) {
   return Vorn::create< TrafficPolicyCounter >( status, counter );
}

} // namespace TrafficPolicyCli
