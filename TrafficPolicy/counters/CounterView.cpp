#include "TrafficPolicy/counters/CounterView.h"

#include "TrafficPolicy/counters/CounterLookup.h"
#include "TrafficPolicy/model/Columns.h"
#include "TrafficPolicy/model/CountAction.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <algorithm>
#include <vector>

namespace TrafficPolicyCli {

namespace {

using PolicyMap::PacketAndByte;
using wendo::indentation;
using wendo::JsonKey;
using wendo::JsonMember;
using wendo::RendererV2;

// The status of a rule below the policy's rule count.
PolicyMap::ClassMapStatus const & statusOf( PolicyState::StatusCursor const & statuses,
                                            unsigned rule ) {
   auto const * classMapStatus = statuses[rule];
   VORN_ASSERT( classMapStatus );
   return *classMapStatus;
}

// The counters that the rules of a policy use.
struct Uses {
   Vorn::HashSet< Vorn::String > named;
   std::vector< bool > unnamed; // by rule: it counts for itself
   bool anyUnnamed = false;

   std::vector< Vorn::String > namesInOrder() const {
      std::vector< Vorn::String > names( named.begin(), named.end() );
      std::sort( names.begin(), names.end() );
      return names;
   }
};

Uses usesOf( PolicyState const & state ) {
   Uses uses;
   auto const & config = state.policyMapConfig();
   if ( !config || !config->currCfg() ) {
      return uses;
   }
   uses.unnamed.resize( state.ruleCount() );
   PolicyState::StatusCursor const statuses( state.classMapStatus() );
   PolicyMap::ClassActions::AheadCursor actions( config->currCfg()->classAction() );
   for ( unsigned rule = 0; rule < state.ruleCount(); ++rule ) {
      wendo::interrupt::check();
      Vorn::String const & className = statusOf( statuses, rule ).name();
      auto const * classAction = actions.find( className );
      auto const * count = countActionOf( classAction ? classAction->get() : nullptr, className );
      if ( !count ) {
         continue;
      }
      if ( count->counterName().empty() ) {
         uses.unnamed[rule] = true;
         uses.anyUnnamed = true;
      } else {
         uses.named.insert( count->counterName() );
      }
   }
   return uses;
}

// The end of a text line: the packets, and the bytes where the hardware has them.
void writeCounts( RendererV2 & renderer, PacketAndByte const & counts, bool bytes ) {
   renderer.text( counts.packets, " packets" );
   if ( bytes ) {
      renderer.text( ' ', counts.bytes, " bytes" );
   }
   renderer.eol();
}

// The counts as the members of the open object.
void addCounts( RendererV2 & renderer, JsonKey const & packetKey, JsonKey const & byteKey,
                PacketAndByte const & counts, bool bytes ) {
   renderer.addJsonKeyValuePair( packetKey, counts.packets );
   if ( bytes ) {
      renderer.addJsonKeyValuePair( byteKey, counts.bytes );
   }
}

// One named counter of a policy.
class NamedCounterInfo {
public:
   NamedCounterInfo( RendererV2 & renderer, PolicyState const & state,
                     Vorn::Ptr< PolicyMap::PacketDataStatus const > const & status )
      : renderer_( renderer )
      , state_( state )
      , status_( status ) {}

   void render( bool countersPerInterface ) {
      static constexpr JsonKey totals( "totals" );
      static constexpr JsonKey packetTotal( "packetTotal" );
      static constexpr JsonKey byteTotal( "byteTotal" );
      auto const counter = renderer_.object( status_->name() );
      renderer_.text( indentation( Columns::list ), status_->name(), ':' );
      if ( countersPerInterface ) {
         renderer_.eol();
         renderInterfaces();
      }
      PacketAndByte const total = totalCounts();
      if ( countersPerInterface ) {
         renderer_.text( indentation( Columns::counterDetails( state_ ) ), "Total:" );
      }
      renderer_.text( ' ' );
      writeCounts( renderer_, total, withBytes() );
      auto const object = renderer_.object( totals );
      addCounts( renderer_, packetTotal, byteTotal, total, withBytes() );
   }

private:
   void renderInterfaces() {
      static constexpr JsonKey interfaces( "interfaces" );
      static constexpr JsonKey packetCount( "packetCount" );
      static constexpr JsonKey byteCount( "byteCount" );
      auto const list = renderer_.object( interfaces );
      for ( auto const & [intf, data] : status_->intfCountData() ) {
         wendo::interrupt::check();
         if ( !data ) {
            trace.write( 7, "IntfCountData not found for ", intf );
            continue;
         }
         PacketAndByte const counts = interfaceCounts( intf );
         renderer_.text( indentation( Columns::counterDetails( state_ ) ), intf.string(), ": " );
         writeCounts( renderer_, counts, withBytes() );
         auto const object = renderer_.object( intf.string() );
         addCounts( renderer_, packetCount, byteCount, counts, withBytes() );
      }
   }

   PacketAndByte totalCounts() const {
      return { getNamedPacketCount( state_.counter(), status_, state_.name() ),
               withBytes() ? getNamedByteCount( state_.counter(), status_, state_.name() ) : 0 };
   }
   PacketAndByte interfaceCounts( Pelx::IntfId const & intf ) const {
      return { getInterfacePacketCount( state_.counter(), status_, state_.name(), intf ),
               withBytes() ? getInterfaceByteCount( state_.counter(), status_, state_.name(), intf )
                           : 0 };
   }
   bool withBytes() const { return state_.byteCountersSupported(); }

   RendererV2 & renderer_;
   PolicyState const & state_;
   Vorn::Ptr< PolicyMap::PacketDataStatus const > const & status_;
};

void renderNamedCounters( RendererV2 & renderer, PolicyState const & state, Uses const & uses,
                          bool countersPerInterface ) {
   static constexpr JsonKey namedCounters( "namedCounters" );
   if ( !state.namedCounter() ) {
      return;
   }
   auto const object = renderer.object( namedCounters );
   for ( Vorn::String const & name : uses.namesInOrder() ) {
      wendo::interrupt::check();
      auto const & status = namedCounterStatus( state, name );
      if ( !state.namedCounter( name ) || !status ) {
         trace.write( 1, { "Counter: ", "renderTrafficPolicyCounters" }, name, " is undefined" );
         continue;
      }
      NamedCounterInfo( renderer, state, status ).render( countersPerInterface );
   }
}

void renderUnnamedCounters( RendererV2 & renderer, PolicyState const & state, Uses const & uses ) {
   static constexpr JsonKey unnamedCounters( "unnamedCounters" );
   static constexpr JsonKey totals( "totals" );
   static constexpr JsonKey packetTotal( "packetTotal" );
   if ( !uses.anyUnnamed ) {
      return;
   }
   RuleSnapshots snapshots( state.counter().get(), state.name() );
   PolicyState::StatusCursor const statuses( state.classMapStatus() );
   auto const object = renderer.object( unnamedCounters );
   for ( unsigned rule = 0; rule < state.ruleCount(); ++rule ) {
      wendo::interrupt::check();
      PolicyMap::ClassMapStatus const & status = statusOf( statuses, rule );
      snapshots.nextRule();
      if ( !uses.unnamed[rule] ) {
         continue;
      }
      uint64_t const packets = snapshots.packets( status );
      renderer.text( indentation( Columns::list ), "match rule: ", status.name(), ": ", packets,
                     " packets\n" );
      auto const counter = renderer.object( status.name() );
      renderer.addJsonObject( totals, JsonMember{ packetTotal, packets } );
   }
}

} // namespace

void renderPolicyCounters( RendererV2 & renderer, Selection const & selection,
                           bool countersPerInterface ) {
   static constexpr JsonKey trafficPolicies( "trafficPolicies" );
   auto const policies = renderer.object( trafficPolicies );
   selection.forEach( [&]( PolicyState const & state ) {
      renderer.text( "Traffic policy ", state.name(), '\n' );
      auto const policy = renderer.object( state.name() );
      Uses const uses = usesOf( state );
      renderNamedCounters( renderer, state, uses, countersPerInterface );
      renderUnnamedCounters( renderer, state, uses );
   } );
}

void renderCounterGranularity( RendererV2 & renderer,
                               TrafficPolicy::CounterGranularity granularity ) {
   static constexpr JsonKey key( "ingressCounterGranularity" );
   using TrafficPolicy::CounterGranularity;
   if ( granularity != CounterGranularity::perPolicy
        && granularity != CounterGranularity::perInterface ) {
      return;
   }
   auto const & text = TrafficPolicy::counterGranularities[granularity];
   renderer.addJsonKeyValuePair( key, text );
   renderer.text( "Counter granularity: ", text, " ingress\n" );
}

} // namespace TrafficPolicyCli
