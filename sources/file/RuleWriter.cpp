#include "sources/file/RuleWriter.h"

#include "TrafficPolicy/platform/records/ActionRecords.h"
#include "TrafficPolicy/platform/records/MatchRecords.h"
#include "TrafficPolicy/platform/values/Decimal.h"

namespace tpcli {

namespace {

using Classification::StructuredFilter;
using wendo::JsonKey;
using wendo::JsonMember;
using wendo::RendererV2;

// A number where both bounds are one, otherwise a list of both.
struct Bounds {
   uint32_t low;
   uint32_t high;
};

constexpr size_t room( wendo::Json< Bounds > const & ) {
   return 2 * Decimal::digitsMax + 3;
}

char * put( char * to, wendo::Json< Bounds > const & range ) {
   auto const [low, high] = range.value;
   if ( low == high ) {
      return Decimal::put( to, low );
   }
   *to++ = '[';
   to = Decimal::put( to, low );
   *to++ = ',';
   to = Decimal::put( to, high );
   *to++ = ']';
   return to;
}

template< typename Key, typename Range >
void addRange( RendererV2 & renderer, Key const & key, Range const & range ) {
   renderer._addJsonKeyValuePair( key, Bounds{ range.low, range.high } );
}

// A list that is left out when it is empty.
template< typename List, typename Each >
void addList( RendererV2 & renderer, JsonKey const & key, List const & list, Each const & each ) {
   if ( list.empty() ) {
      return;
   }
   auto const open = renderer.list( key );
   for ( auto const & element : list ) {
      each( element );
   }
}

template< typename List >
void addRanges( RendererV2 & renderer, JsonKey const & key, List const & list ) {
   addList( renderer, key, list,
            [&]( auto const & range ) { addRange( renderer, wendo::listElement, range ); } );
}

template< typename List >
void addNames( RendererV2 & renderer, JsonKey const & key, List const & list ) {
   addList( renderer, key, list, [&]( Vorn::String const & name ) {
      renderer._addJsonKeyValuePair( wendo::listElement, name );
   } );
}

template< typename List >
void addPrefixes( RendererV2 & renderer, JsonKey const & key, List const & list ) {
   addList( renderer, key, list, [&]( Pelx::IpGenPrefix const & prefix ) {
      renderer._addJsonKeyValuePair( wendo::listElement, prefix );
   } );
}

void addTcpFlags( RendererV2 & renderer, uint16_t flags ) {
   static constexpr JsonKey tcpFlags( "tcpFlags" );
   if ( flags != 0 ) {
      renderer._addJsonKeyValuePair( tcpFlags, uint32_t{ flags } );
   }
}

void addProtocol( RendererV2 & renderer, Classification::ProtocolRange const & range,
                  Classification::ProtoField const & field ) {
   static constexpr JsonKey protocol( "protocol" );
   static constexpr JsonKey sourcePorts( "sourcePorts" );
   static constexpr JsonKey sourcePortSets( "sourcePortSets" );
   static constexpr JsonKey destinationPorts( "destinationPorts" );
   static constexpr JsonKey destinationPortSets( "destinationPortSets" );
   static constexpr JsonKey icmp( "icmp" );
   static constexpr JsonKey type( "type" );
   static constexpr JsonKey codes( "codes" );
   auto const entry = renderer.listEntry();
   addRange( renderer, protocol, range );
   addRanges( renderer, sourcePorts, field.sport() );
   addNames( renderer, sourcePortSets, field.sportFieldSet() );
   addRanges( renderer, destinationPorts, field.dport() );
   addNames( renderer, destinationPortSets, field.dportFieldSet() );
   addTcpFlags( renderer, field.tcpFlags().flags );
   addList( renderer, icmp, field.icmp(), [&]( auto const & element ) {
      auto const one = renderer.listEntry();
      addRange( renderer, type, element.key );
      addRanges( renderer, codes, element.value->icmpCode() );
   } );
}

void addFragment( RendererV2 & renderer, Classification::Fragment const & fragment ) {
   static constexpr JsonKey key( "fragment" );
   static constexpr JsonKey type( "type" );
   static constexpr JsonKey offsets( "offsets" );
   auto const object = renderer.object( key );
   renderer._addJsonKeyValuePair( type, Classification::nameOf( fragment.fragmentType() ) );
   addRanges( renderer, offsets, fragment.offset() );
}

void addRoutingProtocol( RendererV2 & renderer, JsonKey const & key,
                         Classification::RoutingProtocol protocol ) {
   if ( protocol != Classification::RoutingProtocol::none ) {
      renderer._addJsonKeyValuePair( key, Classification::nameOf( protocol ) );
   }
}

void addConditions( RendererV2 & renderer, StructuredFilter const & filter ) {
   static constexpr JsonKey sources( "sources" );
   static constexpr JsonKey sourcePrefixSets( "sourcePrefixSets" );
   static constexpr JsonKey destinations( "destinations" );
   static constexpr JsonKey destinationPrefixSets( "destinationPrefixSets" );
   static constexpr JsonKey protocols( "protocols" );
   static constexpr JsonKey lengths( "lengths" );
   static constexpr JsonKey dscp( "dscp" );
   static constexpr JsonKey ttl( "ttl" );
   static constexpr JsonKey neighborProtocol( "neighborProtocol" );
   static constexpr JsonKey l4Protocol( "l4Protocol" );
   static constexpr JsonKey ipOptions( "ipOptions" );
   addPrefixes( renderer, sources, filter.sources() );
   addNames( renderer, sourcePrefixSets, filter.srcPrefixSets() );
   addPrefixes( renderer, destinations, filter.destinations() );
   addNames( renderer, destinationPrefixSets, filter.dstPrefixSets() );
   addList( renderer, protocols, filter.protocols(),
            [&]( auto const & element ) { addProtocol( renderer, element.key, *element.value ); } );
   addRanges( renderer, lengths, filter.length() );
   if ( filter.fragment() ) {
      addFragment( renderer, *filter.fragment() );
   }
   addRanges( renderer, dscp, filter.dscp() );
   addRanges( renderer, ttl, filter.ttl() );
   addRoutingProtocol( renderer, neighborProtocol, filter.neighborProtocol() );
   addRoutingProtocol( renderer, l4Protocol, filter.matchL4Protocol() );
   if ( filter.matchIpOptions() ) {
      renderer._addJsonKeyValuePair( ipOptions, true );
   }
}

void addMatch( RendererV2 & renderer, PolicyMap::ClassMapSubConfig const & config ) {
   static constexpr JsonKey key( "match" );
   auto const object = renderer.object( key );
   for ( auto const & [family, match] : config.match() ) {
      Vorn::String const name( PolicyMap::matchOptionName( family ).view() );
      if ( !match->structuredFilter() ) {
         renderer._addJsonKeyValuePair( name, nullptr );
         continue;
      }
      auto const one = renderer.object( name );
      addConditions( renderer, *match->structuredFilter() );
   }
}

void addAction( RendererV2 & renderer, PolicyMap::Action const & action ) {
   static constexpr JsonKey drop( "drop" );
   static constexpr JsonKey log( "log" );
   static constexpr JsonKey count( "count" );
   static constexpr JsonKey police( "police" );
   static constexpr JsonKey rate( "rate" );
   static constexpr JsonKey unit( "unit" );
   static constexpr JsonKey setDscp( "setDscp" );
   static constexpr JsonKey setTrafficClass( "setTrafficClass" );
   if ( auto const * counted = PolicyMap::actionAs< PolicyMap::CountAction >( &action ) ) {
      if ( counted->counterName().empty() ) {
         renderer._addJsonKeyValuePair( count, true );
      } else {
         renderer._addJsonKeyValuePair( count, counted->counterName() );
      }
   } else if ( auto const * policed = PolicyMap::actionAs< PolicyMap::PoliceAction >( &action ) ) {
      renderer._addJsonObject( police, JsonMember{ rate, policed->rate() },
                               JsonMember{ unit, PolicyMap::rateUnitText( policed->unit() ) } );
   } else if ( auto const * dscp = PolicyMap::actionAs< PolicyMap::SetDscpAction >( &action ) ) {
      renderer._addJsonKeyValuePair( setDscp, uint32_t{ dscp->value() } );
   } else if ( auto const * tc = PolicyMap::actionAs< TrafficPolicy::SetTcAction >( &action ) ) {
      renderer._addJsonKeyValuePair( setTrafficClass, uint32_t{ tc->value() } );
   } else if ( action.actionType() == PolicyMap::ActionType::drop ) {
      renderer._addJsonKeyValuePair( drop, true );
   } else if ( action.actionType() == PolicyMap::ActionType::log ) {
      renderer._addJsonKeyValuePair( log, true );
   }
}

} // namespace

void addRule( RendererV2 & renderer, uint32_t sequence, Vorn::String const & name,
              PolicyMap::PolicyMapSubConfig const & config ) {
   static constexpr JsonKey nameKey( "name" );
   static constexpr JsonKey sequenceKey( "sequence" );
   static constexpr JsonKey actionsKey( "actions" );
   auto const entry = renderer.listEntry();
   renderer._addJsonKeyValuePair( nameKey, name );
   renderer._addJsonKeyValuePair( sequenceKey, sequence );
   auto const * match = config.rawClassMap( name );
   if ( match && !( *match )->match().empty() ) {
      addMatch( renderer, **match );
   }
   if ( auto const * actions = config.classAction( name ) ) {
      auto const object = renderer.object( actionsKey );
      for ( auto const & [type, action] : ( *actions )->policyAction() ) {
         if ( action ) {
            addAction( renderer, *action );
         }
      }
   }
}

} // namespace tpcli
