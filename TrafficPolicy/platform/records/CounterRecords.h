// Counts, and the counter store with the snapshots of the last clear.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/values/IntfId.h"
#include "TrafficPolicy/platform/values/UniqueId.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"

#include <cstdint>

namespace PolicyMap {

// The counts of one counter.
struct PacketAndByte {
   uint64_t packets = 0;
   uint64_t bytes = 0;
};

// The count of a named counter on one interface: live, or in a snapshot.
class TRAFFIC_POLICY_API IntfCountData : public Vorn::PtrInterface {
   VORN_RECORD( IntfCountData )

   IntfCountData( Pelx::IntfId const & interface, Umbo::UniqueId const & id )
      : intfId_( interface )
      , uniqueId_( id ) {}

   VORN_INPUT( Pelx::IntfId, intfId )
   VORN_INPUT( Umbo::UniqueId, uniqueId )
   VORN_SCALAR( PacketAndByte, countData )
};

// A named counter of a policy, as the hardware side reports it.
class TRAFFIC_POLICY_API PacketDataStatus : public Vorn::PtrInterface {
   VORN_RECORD( PacketDataStatus )

   explicit PacketDataStatus( Vorn::String const & counterName )
      : name_( counterName ) {}

   VORN_INPUT( Vorn::String, name )
   VORN_SCALAR( Umbo::UniqueId, uniqueId )
   VORN_SCALAR( PacketAndByte, total ) // on all interfaces
   // Per interface, not null; empty where the hardware does not count per interface.
   VORN_ORDERED_MAP( Pelx::IntfId, Vorn::Ptr< IntfCountData const >, intfCountData )
};

} // namespace PolicyMap

namespace TrafficPolicy {

// A policy name and the name of a rule or counter in it.
struct PolicyMemberKey {
   Vorn::String policyName;
   Vorn::String name;

   static uint32_t hashOf( Vorn::String const & policyName, Vorn::String const & name ) {
      return Vorn::hashOfWords< 2 >( { policyName.hash(), name.hash() } );
   }
   uint32_t hash() const { return hashOf( policyName, name ); }
   // The name first: it is what usually differs.
   bool has( Vorn::String const & policy, Vorn::String const & member ) const {
      return name == member && policyName == policy;
   }
   friend bool operator==( PolicyMemberKey const & a, PolicyMemberKey const & b ) {
      return a.has( b.policyName, b.name );
   }
};
struct CounterKey : PolicyMemberKey {};      // names a rule
struct NamedCounterKey : PolicyMemberKey {}; // names a counter

// A CounterKey for one access, which counts no reference of its names.
struct CounterKeyView {
   Vorn::String const & policyName;
   Vorn::String const & name;

   uint32_t hash() const { return PolicyMemberKey::hashOf( policyName, name ); }
   explicit operator CounterKey() const { return { { policyName, name } }; }
   friend bool operator==( CounterKey const & a, CounterKeyView const & b ) {
      return a.has( b.policyName, b.name );
   }
};

// The snapshot of a rule's counter.
struct CounterVersion {
   Umbo::UniqueId uniqueId;
   uint64_t packets = 0;
};

// The snapshot of a named counter; owned by the store.
class TRAFFIC_POLICY_API NamedCounterVersion : public Vorn::PtrInterface {
   VORN_RECORD( NamedCounterVersion )

   NamedCounterVersion( NamedCounterKey const & counterKey, Umbo::UniqueId const & id )
      : key_( counterKey )
      , uniqueId_( id ) {}

   VORN_INPUT( NamedCounterKey, key )
   VORN_INPUT( Umbo::UniqueId, uniqueId )
   VORN_SCALAR( PolicyMap::PacketAndByte, totalCount )

   using PerIntfCount = Vorn::OrderedMap< Pelx::IntfId, Vorn::Ptr< PolicyMap::IntfCountData > >;

   PerIntfCount const & perIntfCount() const { return perIntfCount_; }
   // The interface's entry, or null.
   PolicyMap::IntfCountData const * perIntfCount( Pelx::IntfId const & intf ) const;
   // Creates the entry with this id; an existing one is returned and keeps its own id.
   PolicyMap::IntfCountData & perIntfCountIs( Pelx::IntfId const & intf,
                                              Umbo::UniqueId const & id );
   void perIntfCountDel( Pelx::IntfId const & intf ) { perIntfCount_.erase( intf ); }

private:
   PerIntfCount perIntfCount_;
};

// The counter store. Shows read it; clearing is its only writer.
class TRAFFIC_POLICY_API Counter : public Vorn::PtrInterface {
   VORN_RECORD( Counter )

   using NamedSnapshots = Vorn::HashMap< NamedCounterKey, Vorn::Ptr< NamedCounterVersion > >;

   VORN_HASHED_MAP( CounterKey, CounterVersion, snapshot )
   VORN_SCALAR( double, timestamp ) // of the last clear: seconds since the epoch, wall clock

   void snapshotIs( CounterKeyView const & key, CounterVersion const & version ) {
      snapshot_.setFor( key, version );
   }

   NamedSnapshots const & namedSnapshot() const { return namedSnapshot_; }
   // The counter's snapshot, or null.
   NamedCounterVersion const * namedSnapshot( NamedCounterKey const & key ) const;
   // Creates the snapshot with this id; an existing one is returned and keeps its own id.
   NamedCounterVersion & namedSnapshotIs( NamedCounterKey const & key, Umbo::UniqueId const & id );
   void namedSnapshotDel( NamedCounterKey const & key ) { namedSnapshot_.erase( key ); }

   // Reserves room for the snapshots of this many rules.
   void snapshotReserve( size_t rules ) { snapshot_.reserve( rules ); }

private:
   NamedSnapshots namedSnapshot_;
};

} // namespace TrafficPolicy
