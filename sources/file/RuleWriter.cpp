#include "sources/file/RuleWriter.h"

#include "TrafficPolicy/views/RendererV2.h"

namespace tpcli {

namespace {

using Classification::FragmentType;
using Classification::NumericalRange;
using Classification::ProtoField;
using Classification::RoutingProtocol;
using Classification::StructuredFilter;
using PolicyMap::Action;
using PolicyMap::actionAs;
using PolicyMap::ActionType;
using wendo::JsonKey;
using wendo::RendererV2;

// A range as the file has it: [low,high].
struct Bounds {
   uint32_t low;
   uint32_t high;
};
constexpr size_t room( wendo::Json< Bounds > ) {
   return 2 * Decimal::digitsMax + 3;
}
char * put( char * to, wendo::Json< Bounds > json ) {
   *to++ = '[';
   to = Decimal::put( to, json.value.low );
   *to++ = ',';
   to = Decimal::put( to, json.value.high );
   *to++ = ']';
   return to;
}

// A member, or with the empty key a list element.
template< typename Value >
void add( RendererV2 & renderer, JsonKey const & key, Value const & value ) {
   if constexpr ( !std::derived_from< Value, NumericalRange > ) {
      renderer._addJsonKeyValuePair( key, value );
   } else if ( value.low == value.high ) {
      renderer._addJsonKeyValuePair( key, value.low );
   } else {
      renderer._addJsonKeyValuePair( key, Bounds{ value.low, value.high } );
   }
}

// An empty collection is left out.
template< typename Elements >
void addList( RendererV2 & renderer, JsonKey const & key, Elements const & elements ) {
   if ( !elements.empty() ) {
      auto const list = renderer.list( key );
      for ( auto const & element : elements ) {
         add( renderer, wendo::listElement, element );
      }
   }
}

void addIcmp( RendererV2 & renderer, ProtoField const & field ) {
   static constexpr JsonKey icmp( "icmp" );
   static constexpr JsonKey typeKey( "type" );
   static constexpr JsonKey codesKey( "codes" );
   if ( field.icmp().empty() ) {
      return;
   }
   auto const list = renderer.list( icmp );
   for ( auto const & [type, codes] : field.icmp() ) {
      auto const open = renderer.listEntry();
      add( renderer, typeKey, type );
      if ( codes ) {
         addList( renderer, codesKey, codes->icmpCode() );
      }
   }
}

void addProtocols( RendererV2 & renderer, StructuredFilter const & filter ) {
   static constexpr JsonKey protocols( "protocols" );
   static constexpr JsonKey protocolKey( "protocol" );
   static constexpr JsonKey sourcePorts( "sourcePorts" );
   static constexpr JsonKey sourcePortSets( "sourcePortSets" );
   static constexpr JsonKey destinationPorts( "destinationPorts" );
   static constexpr JsonKey destinationPortSets( "destinationPortSets" );
   static constexpr JsonKey tcpFlags( "tcpFlags" );
   if ( filter.protocols().empty() ) {
      return;
   }
   auto const list = renderer.list( protocols );
   for ( auto const & [protocol, field] : filter.protocols() ) {
      auto const open = renderer.listEntry();
      add( renderer, protocolKey, protocol );
      if ( !field ) {
         continue;
      }
      addList( renderer, sourcePorts, field->sport() );
      addList( renderer, sourcePortSets, field->sportFieldSet() );
      addList( renderer, destinationPorts, field->dport() );
      addList( renderer, destinationPortSets, field->dportFieldSet() );
      if ( unsigned const flags = field->tcpFlags().mask; flags != 0 ) {
         add( renderer, tcpFlags, flags );
      }
      addIcmp( renderer, *field );
   }
}

void addFragment( RendererV2 & renderer, Classification::Fragment const & fragment ) {
   static constexpr JsonKey fragmentKey( "fragment" );
   static constexpr JsonKey type( "type" );
   static constexpr JsonKey offsets( "offsets" );
   auto const open = renderer.object( fragmentKey );
   add( renderer, type, Classification::fragmentTypes[fragment.fragmentType()].view() );
   if ( fragment.fragmentType() == FragmentType::offset ) {
      addList( renderer, offsets, fragment.offset() );
   }
}

void addRouting( RendererV2 & renderer, JsonKey const & key, RoutingProtocol protocol ) {
   if ( protocol != RoutingProtocol::none ) {
      add( renderer, key, Classification::routingProtocols[protocol].view() );
   }
}

void addConditions( RendererV2 & renderer, StructuredFilter const & filter ) {
   static constexpr JsonKey sources( "sources" );
   static constexpr JsonKey sourceSets( "sourcePrefixSets" );
   static constexpr JsonKey destinations( "destinations" );
   static constexpr JsonKey destinationSets( "destinationPrefixSets" );
   static constexpr JsonKey lengths( "lengths" );
   static constexpr JsonKey dscp( "dscp" );
   static constexpr JsonKey ttl( "ttl" );
   static constexpr JsonKey neighborProtocol( "neighborProtocol" );
   static constexpr JsonKey l4Protocol( "l4Protocol" );
   static constexpr JsonKey ipOptions( "ipOptions" );
   addList( renderer, sources, filter.sources() );
   addList( renderer, sourceSets, filter.srcPrefixSets() );
   addList( renderer, destinations, filter.destinations() );
   addList( renderer, destinationSets, filter.dstPrefixSets() );
   addProtocols( renderer, filter );
   addList( renderer, lengths, filter.length() );
   if ( auto const & fragment = filter.fragment() ) {
      addFragment( renderer, *fragment );
   }
   addList( renderer, dscp, filter.dscp() );
   addList( renderer, ttl, filter.ttl() );
   addRouting( renderer, neighborProtocol, filter.neighborProtocol() );
   addRouting( renderer, l4Protocol, filter.matchL4Protocol() );
   if ( filter.matchIpOptions() ) {
      add( renderer, ipOptions, true );
   }
}

void addMatch( RendererV2 & renderer, PolicyMap::ClassMapSubConfig const & classConfig ) {
   static constexpr JsonKey matchKey( "match" );
   auto const all = renderer.object( matchKey );
   for ( auto const & [family, match] : classConfig.match() ) {
      std::string_view const name = PolicyMap::matchOptionName( family ).view();
      auto const filter = match ? match->structuredFilter() : nullptr;
      if ( filter ) {
         auto const open = renderer.object( name );
         addConditions( renderer, *filter );
      } else {
         renderer._addJsonKeyValuePair( name, nullptr );
      }
   }
}

void addPolice( RendererV2 & renderer, PolicyMap::PoliceAction const & police ) {
   static constexpr JsonKey policeKey( "police" );
   static constexpr JsonKey rate( "rate" );
   static constexpr JsonKey unit( "unit" );
   auto const open = renderer.object( policeKey );
   add( renderer, rate, police.rate() );
   add( renderer, unit, PolicyMap::rateUnitText( police.unit() ).view() );
}

void addAction( RendererV2 & renderer, ActionType type, Action const * action ) {
   static constexpr JsonKey drop( "drop" );
   static constexpr JsonKey log( "log" );
   static constexpr JsonKey countKey( "count" );
   static constexpr JsonKey setDscp( "setDscp" );
   static constexpr JsonKey setTrafficClass( "setTrafficClass" );
   if ( type == ActionType::drop ) {
      add( renderer, drop, true );
   } else if ( type == ActionType::log ) {
      add( renderer, log, true );
   } else if ( auto const * police = actionAs< PolicyMap::PoliceAction >( action ) ) {
      addPolice( renderer, *police );
   } else if ( auto const * dscp = actionAs< PolicyMap::SetDscpAction >( action ) ) {
      add( renderer, setDscp, unsigned{ dscp->value() } );
   } else if ( auto const * tc = actionAs< TrafficPolicy::SetTcAction >( action ) ) {
      add( renderer, setTrafficClass, unsigned{ tc->value() } );
   } else if ( auto const * count = actionAs< PolicyMap::CountAction >( action ) ) {
      if ( count->counterName().empty() ) {
         add( renderer, countKey, true );
      } else {
         add( renderer, countKey, count->counterName() );
      }
   }
}

} // namespace

void addRule( RendererV2 & renderer, PolicyMap::PolicyMapSubConfig const & policy,
              uint32_t sequence, Vorn::String const & name ) {
   static constexpr JsonKey nameKey( "name" );
   static constexpr JsonKey sequenceKey( "sequence" );
   static constexpr JsonKey actionsKey( "actions" );
   auto const open = renderer.listEntry();
   add( renderer, nameKey, name );
   add( renderer, sequenceKey, sequence );
   if ( auto const * match = policy.rawClassMap( name ); match && *match ) {
      addMatch( renderer, **match );
   }
   if ( auto const * actions = policy.classAction( name ); actions && *actions ) {
      auto const all = renderer.object( actionsKey );
      for ( auto const & [type, action] : ( *actions )->policyAction() ) {
         addAction( renderer, type, action.get() );
      }
   }
}

} // namespace tpcli
