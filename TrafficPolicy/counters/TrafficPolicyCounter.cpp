#include "TrafficPolicy/counters/TrafficPolicyCounter.h"

#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/vorn/Clock.h"
#include "TrafficPolicy/platform/vorn/Describe.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <optional>
#include <vector>

namespace TrafficPolicyCli {

VORN_TYPE( TrafficPolicyCounter )

namespace {

using PolicyMap::ClassStatuses;
using PolicyMap::PacketDataStatus;
using PolicyMap::PolicyMapStatus;
using TrafficPolicy::CounterKey;
using TrafficPolicy::CounterKeyView;
using TrafficPolicy::NamedCounterKey;
using TrafficPolicy::NamedCounterVersion;

// Which rules and counters still exist. Keeps the last policy and the position of the last rule in
// it: snapshots of a policy are neighbours, mostly in the order of its rules.
class Survivors {
public:
   explicit Survivors( PolicyMap::PolicyMapTypeStatus const & status )
      : status_( status ) {}

   bool has( CounterKey const & key ) {
      return policy( key.policyName ) && classes_->find( key.name );
   }
   // The counter's status, or null.
   PacketDataStatus const * find( NamedCounterKey const & key ) {
      PolicyMapStatus const * status = policy( key.policyName );
      auto const * counterStatus = status ? status->counterStatus( key.name ) : nullptr;
      return counterStatus ? counterStatus->get() : nullptr;
   }

private:
   // The policy's status, or null.
   PolicyMapStatus const * policy( Vorn::String const & name ) {
      if ( !asked_ || !name.same( name_ ) ) {
         auto const * policy = status_.policyMapStatus( name );
         PolicyMapStatus const * found = policy ? policy->get() : nullptr;
         if ( found && found != found_ ) {
            classes_.emplace( found->cmap() );
         }
         found_ = found;
         name_ = name;
         asked_ = true;
      }
      return found_;
   }

   PolicyMap::PolicyMapTypeStatus const & status_;
   Vorn::String name_;
   PolicyMapStatus const * found_ = nullptr;
   std::optional< ClassStatuses::Cursor > classes_;
   bool asked_ = false;
};

} // namespace

void TrafficPolicyCounter::clearCounter() {
   VORN_ASSERT( status() );
   VORN_ASSERT( counter() );
   for ( auto const & [name, policy] : status()->policyMapStatus() ) {
      wendo::interrupt::check();
      if ( !policy ) {
         trace.write( 7, "PolicyMapStatus not found for ", name );
         continue;
      }
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
      wendo::interrupt::check();
      if ( !counterStatus ) {
         trace.write( 7, "PacketDataStatus not found for ", name );
         continue;
      }
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
      wendo::interrupt::check();
      if ( !data ) {
         trace.write( 7, "IntfCountData not found for ", intf );
         continue;
      }
      PolicyMap::IntfCountData const * old = snapshot.perIntfCount( intf );
      if ( old && !( old->uniqueId() == data->uniqueId() ) ) {
         snapshot.perIntfCountDel( intf );
      }
      snapshot.perIntfCountIs( intf, data->uniqueId() ).countDataIs( data->countData() );
   }
}

void TrafficPolicyCounter::snapshotRules( PolicyMapStatus const & policy ) {
   counter()->snapshotReserve( policy.cmap().size() );
   auto const keyOf = [&]( PolicyMap::ClassMapStatus const & classStatus ) {
      return CounterKeyView{ policy.name(), classStatus.name() };
   };
   Vorn::forEachWithin( policy.cmap(), counter()->snapshot(), keyOf, [&]( auto const & entry ) {
      wendo::interrupt::check();
      auto const & [name, classStatus] = entry;
      if ( !classStatus ) {
         trace.write( 7, "ClassMapStatus not found for ", name );
         return;
      }
      counter()->snapshotIs( CounterKeyView{ policy.name(), name },
                             { classStatus->uniqueId(), classStatus->packetCount() } );
   } );
}

void TrafficPolicyCounter::removeStaleRules() {
   Survivors survivors( *status() );
   std::vector< CounterKey > stale;
   for ( auto const & [key, snapshot] : counter()->snapshot() ) {
      wendo::interrupt::check();
      if ( !survivors.has( key ) ) {
         stale.push_back( key );
      }
   }
   for ( CounterKey const & key : stale ) {
      counter()->snapshotDel( key );
   }
}

void TrafficPolicyCounter::removeStaleNamedCounters() {
   Survivors survivors( *status() );
   std::vector< NamedCounterKey > stale;
   for ( auto const & [key, snapshot] : counter()->namedSnapshot() ) {
      wendo::interrupt::check();
      PacketDataStatus const * counterStatus = survivors.find( key );
      if ( !counterStatus ) {
         stale.push_back( key );
         continue;
      }
      std::vector< Pelx::IntfId > gone;
      for ( auto const & [intf, data] : snapshot->perIntfCount() ) {
         if ( !counterStatus->intfCountData( intf ) ) {
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
