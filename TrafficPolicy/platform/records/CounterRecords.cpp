#include "TrafficPolicy/platform/records/CounterRecords.h"

namespace TrafficPolicy {

namespace {

// The map's entity with this key, or null.
template< typename Map >
auto * entityOf( Map const & map, typename Map::KeyType const & key ) {
   auto const * found = map.lookup( key );
   return found ? found->get() : nullptr;
}

template< typename Entity, typename Map >
Entity & entityIs( Map & map, typename Map::KeyType const & key, Umbo::UniqueId const & id ) {
   if ( Entity * present = entityOf( map, key ) ) {
      return *present;
   }
   auto const created = Vorn::create< Entity >( key, id );
   map.set( key, created );
   return *created;
}

} // namespace

PolicyMap::IntfCountData const *
NamedCounterVersion::perIntfCount( Pelx::IntfId const & intf ) const {
   return entityOf( perIntfCount_, intf );
}

PolicyMap::IntfCountData & NamedCounterVersion::perIntfCountIs( Pelx::IntfId const & intf,
                                                                Umbo::UniqueId const & id ) {
   return entityIs< PolicyMap::IntfCountData >( perIntfCount_, intf, id );
}

NamedCounterVersion const * Counter::namedSnapshot( NamedCounterKey const & key ) const {
   return entityOf( namedSnapshot_, key );
}

NamedCounterVersion & Counter::namedSnapshotIs( NamedCounterKey const & key,
                                                Umbo::UniqueId const & id ) {
   return entityIs< NamedCounterVersion >( namedSnapshot_, key, id );
}

} // namespace TrafficPolicy
