#include "sources/file/CounterStoreWriter.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace tpcli {

namespace {

using wendo::JsonKey;
using wendo::RendererV2;

constexpr JsonKey policyKey( "policy" );
constexpr JsonKey counterIdKey( "counterId" );
constexpr JsonKey packetsKey( "packets" );
constexpr JsonKey bytesKey( "bytes" );

// A counter without an id has no such member.
void addId( RendererV2 & renderer, Umbo::UniqueId const & id ) {
   if ( !( id == Umbo::UniqueId() ) ) {
      renderer._addJsonKeyValuePair( counterIdKey, id.value() );
   }
}

void addCounts( RendererV2 & renderer, Umbo::UniqueId const & id,
                PolicyMap::PacketAndByte const & count ) {
   addId( renderer, id );
   renderer._addJsonKeyValuePair( packetsKey, count.packets );
   renderer._addJsonKeyValuePair( bytesKey, count.bytes );
}

void addRules( RendererV2 & renderer, TrafficPolicy::Counter const & store ) {
   static constexpr JsonKey rules( "rules" );
   static constexpr JsonKey rule( "rule" );
   auto const list = renderer.list( rules );
   for ( auto const & [key, snapshot] : store.snapshot() ) {
      wendo::interrupt::check();
      auto const entry = renderer.listEntry();
      renderer._addJsonKeyValuePair( policyKey, key.policyName );
      renderer._addJsonKeyValuePair( rule, key.name );
      addId( renderer, snapshot.uniqueId );
      renderer._addJsonKeyValuePair( packetsKey, snapshot.packets );
   }
}

void addNamedCounters( RendererV2 & renderer, TrafficPolicy::Counter const & store ) {
   static constexpr JsonKey namedCounters( "namedCounters" );
   static constexpr JsonKey counter( "counter" );
   static constexpr JsonKey interfaces( "interfaces" );
   auto const list = renderer.list( namedCounters );
   for ( auto const & [key, snapshot] : store.namedSnapshot() ) {
      auto const entry = renderer.listEntry();
      renderer._addJsonKeyValuePair( policyKey, key.policyName );
      renderer._addJsonKeyValuePair( counter, key.name );
      addCounts( renderer, snapshot->uniqueId(), snapshot->totalCount() );
      if ( snapshot->perIntfCount() ) {
         auto const object = renderer.object( interfaces );
         for ( auto const & [intf, data] : snapshot->perIntfCount() ) {
            auto const counts = renderer.object( intf.string() );
            addCounts( renderer, data->uniqueId(), data->countData() );
         }
      }
   }
}

} // namespace

void formatCounterStore( wendo::PrintBuffer & buffer, TrafficPolicy::Counter const & store ) {
   static constexpr JsonKey timestamp( "timestamp" );
   RendererV2 renderer( wendo::OutputFormat_t::JSON, buffer );
   renderer.startJsonRoot();
   renderer._addJsonKeyValuePair( timestamp, store.timestamp() );
   addRules( renderer, store );
   addNamedCounters( renderer, store );
   renderer.endJsonRoot();
}

} // namespace tpcli
