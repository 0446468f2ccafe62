#include "TrafficPolicy/counters/CounterView.h"

#include "TrafficPolicy/counters/CounterLookup.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/vorn/Prefetch.h"

#include <algorithm>
#include <vector>

namespace TrafficPolicyCli {

namespace {

using PolicyMap::PacketAndByte;
using wendo::indentation;
using wendo::JsonKey;
using wendo::JsonMember;
using wendo::RendererV2;

constexpr unsigned listIndent = 3;

// Asks for the status of a rule to come, and for its name.
void prefetchStatus( PolicyState const & state, unsigned rule ) {
   constexpr unsigned far = 16; // rules
   constexpr unsigned near = 8;
   Vorn::prefetch( state.classMapStatus( rule + far ).get() );
   if ( auto const & status = state.classMapStatus( rule + near ) ) {
      Vorn::prefetch( status->name().data() );
   }
}

// What the rules of a policy count into.
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
   PolicyMap::ClassActions::Cursor actions( config->currCfg()->classAction() );
   for ( unsigned rule = 0; rule < state.ruleCount(); ++rule ) {
      PolicyMap::prefetchActions( actions );
      prefetchStatus( state, rule );
      auto const * classAction = actions.find( state.classMapStatus( rule )->name() );
      auto const * count = classAction ? PolicyMap::actionAs< PolicyMap::CountAction >(
                              ( *classAction )->policyAction( PolicyMap::ActionType::count ) )
                                       : nullptr;
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
   renderer.write( counts.packets, " packets" );
   if ( bytes ) {
      renderer.write( ' ', counts.bytes, " bytes" );
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
      renderer_.startJsonObject( status_->name() );
      if ( renderer_.isText() ) {
         renderer_.write( indentation( listIndent ), status_->name(), ':' );
      }
      if ( countersPerInterface ) {
         renderer_.eol();
         renderInterfaces();
      }
      PacketAndByte const total = totalCounts();
      if ( renderer_.isText() ) {
         if ( countersPerInterface ) {
            renderer_.write( indentation( state_.indentCountPerLevel() + 3 ), "Total:" );
         }
         renderer_.write( ' ' );
         writeCounts( renderer_, total, withBytes() );
      }
      renderer_.startJsonObject( totals );
      addCounts( renderer_, packetTotal, byteTotal, total, withBytes() );
      renderer_.endJsonDict();
      renderer_.endJsonDict();
   }

private:
   void renderInterfaces() {
      static constexpr JsonKey interfaces( "interfaces" );
      static constexpr JsonKey packetCount( "packetCount" );
      static constexpr JsonKey byteCount( "byteCount" );
      renderer_.startJsonObject( interfaces );
      for ( auto const & [intf, data] : status_->intfCountData() ) {
         PacketAndByte const counts = interfaceCounts( intf );
         if ( renderer_.isText() ) {
            renderer_.write( indentation( state_.indentCountPerLevel() + 3 ), intf.string(), ": " );
            writeCounts( renderer_, counts, withBytes() );
         }
         renderer_.startJsonObject( intf.string() );
         addCounts( renderer_, packetCount, byteCount, counts, withBytes() );
         renderer_.endJsonDict();
      }
      renderer_.endJsonDict();
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
   renderer.startJsonObject( namedCounters );
   for ( Vorn::String const & name : uses.namesInOrder() ) {
      auto const * status = state.policyMapStatus()->counterStatus( name );
      if ( !state.namedCounter( name ) || !status ) {
         trace.write( 1, { "Counter: ", "renderTrafficPolicyCounters" }, name, " is undefined" );
         continue;
      }
      NamedCounterInfo( renderer, state, *status ).render( countersPerInterface );
   }
   renderer.endJsonDict();
}

void renderUnnamedCounters( RendererV2 & renderer, PolicyState const & state, Uses const & uses ) {
   static constexpr JsonKey unnamedCounters( "unnamedCounters" );
   static constexpr JsonKey totals( "totals" );
   static constexpr JsonKey packetTotal( "packetTotal" );
   if ( !uses.anyUnnamed ) {
      return;
   }
   RuleSnapshots snapshots( state.counter().get(), state.name() );
   renderer.startJsonObject( unnamedCounters );
   for ( unsigned rule = 0; rule < state.ruleCount(); ++rule ) {
      prefetchStatus( state, rule );
      snapshots.nextRule();
      if ( !uses.unnamed[rule] ) {
         continue;
      }
      PolicyMap::ClassMapStatus const & status = *state.classMapStatus( rule );
      uint64_t const packets = snapshots.packets( status );
      if ( renderer.isText() ) {
         renderer.write( indentation( listIndent ), "match rule: ", status.name(), ": ", packets,
                         " packets\n" );
      }
      if ( renderer.isJson() ) {
         renderer._startJsonObject( status.name() );
         renderer._addJsonObject( totals, JsonMember{ packetTotal, packets } );
         renderer.endJsonDict();
      }
   }
   renderer.endJsonDict();
}

} // namespace

void renderPolicyCounters( RendererV2 & renderer, Selection const & selection,
                           bool countersPerInterface ) {
   static constexpr JsonKey trafficPolicies( "trafficPolicies" );
   renderer.startJsonObject( trafficPolicies );
   selection.forEach( [&]( PolicyState const & state ) {
      if ( renderer.isText() ) {
         renderer.write( "Traffic policy ", state.name(), '\n' );
      }
      renderer.startJsonObject( state.name() );
      Uses const uses = usesOf( state );
      renderNamedCounters( renderer, state, uses, countersPerInterface );
      renderUnnamedCounters( renderer, state, uses );
      renderer.endJsonDict();
   } );
   renderer.endJsonDict();
}

void renderCounterGranularity( RendererV2 & renderer,
                               TrafficPolicy::CounterGranularity granularity ) {
   static constexpr JsonKey key( "ingressCounterGranularity" );
   static constexpr wendo::PlainText perPolicy( "per-policy" );
   static constexpr wendo::PlainText perInterface( "per-interface" );
   using TrafficPolicy::CounterGranularity;
   if ( granularity != CounterGranularity::perPolicy
        && granularity != CounterGranularity::perInterface ) {
      return;
   }
   auto const & text = granularity == CounterGranularity::perPolicy ? perPolicy : perInterface;
   renderer.addJsonKeyValuePair( key, text );
   if ( renderer.isText() ) {
      renderer.write( "Counter granularity: ", text, " ingress\n" );
   }
}

} // namespace TrafficPolicyCli
