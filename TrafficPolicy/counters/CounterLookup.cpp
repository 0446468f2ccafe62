#include "TrafficPolicy/counters/CounterLookup.h"

#include "TrafficPolicy/model/Trace.h"

namespace TrafficPolicyCli {

namespace {

using PolicyMap::PacketAndByte;
using Count = uint64_t PacketAndByte::*;

// The snapshot that applies to the counter's incarnation, or null; null without a store.
TrafficPolicy::NamedCounterVersion const *
applicableSnapshot( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                    PolicyMap::PacketDataStatus const & status, Vorn::String const & policyName ) {
   if ( !counter || counter->namedSnapshot().empty() ) {
      return nullptr;
   }
   auto const * snapshot =
      counter->namedSnapshot( TrafficPolicy::NamedCounterKey{ { policyName, status.name() } } );
   return snapshot && snapshot->uniqueId() == status.uniqueId() ? snapshot : nullptr;
}

// The increase since the snapshot; a value that went backwards is reported and reads as 0.
template< typename Report >
uint64_t since( uint64_t snapshot, uint64_t current, Report const & report ) {
   if ( current < snapshot ) {
      report();
      return 0;
   }
   return current - snapshot;
}

uint64_t namedCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                     PolicyMap::PacketDataStatus const & status, Vorn::String const & policyName,
                     Count count, char const * function ) {
   uint64_t const current = status.total().*count;
   auto const * snapshot = applicableSnapshot( counter, status, policyName );
   if ( !snapshot ) {
      return current;
   }
   return since( snapshot->totalCount().*count, current, [&] {
      trace.write( 1, { "Counter value for policy ", function }, policyName, ", counter ",
                   status.name(), " has moved backwards" );
   } );
}

uint64_t interfaceCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                         PolicyMap::PacketDataStatus const & status,
                         Vorn::String const & policyName, Pelx::IntfId const & intf, Count count,
                         char const * function ) {
   auto const * entry = status.intfCountData( intf );
   VORN_ASSERT( entry && *entry );
   uint64_t const current = ( *entry )->countData().*count;
   auto const * snapshot = applicableSnapshot( counter, status, policyName );
   auto const * intfSnapshot = snapshot ? snapshot->perIntfCount( intf ) : nullptr;
   if ( !intfSnapshot || !( intfSnapshot->uniqueId() == ( *entry )->uniqueId() ) ) {
      return current;
   }
   return since( intfSnapshot->countData().*count, current, [&] {
      trace.write( 1, { "Counter value for policy ", function }, policyName, ", counter ",
                   status.name(), ", intf: ", intf, " has moved backwards" );
   } );
}

TrafficPolicy::Counter const & storeOrNone( TrafficPolicy::Counter const * counter ) {
   static Vorn::Ptr< TrafficPolicy::Counter const > const none =
      Vorn::create< TrafficPolicy::Counter >();
   return counter ? *counter : *none;
}

} // namespace

RuleSnapshots::RuleSnapshots( TrafficPolicy::Counter const * counter,
                              Vorn::String const & policyName )
   : none_( storeOrNone( counter ).snapshot().empty() )
   , snapshots_( storeOrNone( counter ).snapshot() )
   , policyName_( policyName ) {}

uint64_t RuleSnapshots::packets( PolicyMap::ClassMapStatus const & classStatus ) {
   uint64_t const current = classStatus.packetCount();
   if ( none_ ) {
      return current;
   }
   TrafficPolicy::CounterKeyView const key{ policyName_, classStatus.name() };
   auto const * snapshot = snapshots_.find( key, distance_ );
   if ( !snapshot ) {
      return current;
   }
   distance_ = 0;
   if ( !( snapshot->uniqueId == classStatus.uniqueId() ) ) {
      return current;
   }
   return since( snapshot->packets, current, [&] {
      trace.write( 1, { "Counter value for policy ", "getRulePacketCount" }, policyName_,
                   ", class ", classStatus.name(), " has moved backwards" );
   } );
}

uint64_t getRulePacketCount( Vorn::Ptr< PolicyMap::ClassMapStatus const > const & classStatus,
                             Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                             Vorn::String policyName ) {
   return RuleSnapshots( counter.get(), policyName ).packets( *classStatus );
}

uint64_t getNamedPacketCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                              Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                              Vorn::String const & policyName ) {
   return namedCount( counter, *counterStatus, policyName, &PacketAndByte::packets, __func__ );
}

uint64_t getNamedByteCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                            Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                            Vorn::String const & policyName ) {
   return namedCount( counter, *counterStatus, policyName, &PacketAndByte::bytes, __func__ );
}

uint64_t
getInterfacePacketCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                         Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                         Vorn::String const & policyName, Pelx::IntfId const & intf ) {
   return interfaceCount( counter, *counterStatus, policyName, intf, &PacketAndByte::packets,
                          __func__ );
}

uint64_t
getInterfaceByteCount( Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                       Vorn::Ptr< PolicyMap::PacketDataStatus const > const & counterStatus,
                       Vorn::String const & policyName, Pelx::IntfId const & intf ) {
   return interfaceCount( counter, *counterStatus, policyName, intf, &PacketAndByte::bytes,
                          __func__ );
}

} // namespace TrafficPolicyCli
