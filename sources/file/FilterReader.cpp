// A rule's match conditions in one family.

#include "TrafficPolicy/platform/vorn/DescribeAttributes.h"
#include "sources/file/StateReader.h"
#include "sources/file/ValueReaders.h"

namespace tpcli {

namespace {

using Classification::Fragment;
using Classification::FragmentType;
using Classification::ProtocolRange;
using Classification::ProtoField;
using Classification::StructuredFilter;
using Classification::TypeAndCode;
using PolicyMap::ClassMapMatchOption;

// A condition that a record gains is one more member below.
static_assert( Vorn::declaredLines< StructuredFilter >.size() == 12 );
static_assert( Vorn::declaredLines< ProtoField >.size() == 6 );
static_assert( Vorn::declaredLines< Fragment >.size() == 2 );
static_assert( Vorn::declaredLines< TypeAndCode >.size() == 1 );

constexpr NumberKind ports{ "a port", 65535 };
constexpr NumberKind packetLengths{ "a packet length", 65535 };
constexpr NumberKind fragmentOffsets{ "a fragment offset", 65535 };
constexpr NumberKind icmpTypes{ "an ICMP type", 255 };
constexpr NumberKind icmpCodes{ "an ICMP code", 255 };
constexpr NumberKind ttls{ "a TTL", 255 };

// Frames and labels have no names for protocols.
constexpr NumberKind protocolsOf( ClassMapMatchOption family ) {
   return { "a protocol", 255,
            family == ClassMapMatchOption::ipv4   ? Names::ipv4Protocol
            : family == ClassMapMatchOption::ipv6 ? Names::ipv6Protocol
                                                  : nullptr };
}

// A list of ranges, each once, into the set behind the accessor.
template< typename Range, typename Record >
auto ranges( Record & record, bool ( Record::*insert )( Range const & ), NumberKind const & kind ) {
   return [&record, insert, &kind]( JsonValue & list ) {
      list.list( [&]( JsonValue v ) {
         if ( !( record.*insert )( readRange< Range >( v, kind ) ) ) {
            v.fail( "the range stands in the list twice" );
         }
      } );
   };
}

// A list of names of sets, each once.
template< typename Record >
auto setNames( Record & record, bool ( Record::*insert )( Vorn::String const & ) ) {
   return [&record, insert]( JsonValue & list ) {
      list.list( [&]( JsonValue v ) {
         Vorn::String const name( v.name( "a set name" ) );
         if ( !( record.*insert )( name ) ) {
            v.fail( quoted( name.view() ) + " stands in the list twice" );
         }
      } );
   };
}

template< typename Record >
auto prefixes( Record & record, bool ( Record::*insert )( Pelx::IpGenPrefix const & ),
               ClassMapMatchOption family ) {
   return [&record, insert, family]( JsonValue & list ) {
      list.list( [&]( JsonValue v ) {
         if ( !( record.*insert )( readPrefix( v, family ) ) ) {
            v.fail( "the prefix stands in the list twice" );
         }
      } );
   };
}

uint16_t readTcpFlags( JsonValue & value ) {
   if ( value.isNumber() ) {
      return static_cast< uint16_t >( value.number( "a set of TCP flag bits", 0xffff ) );
   }
   unsigned flags = 0;
   value.list( [&]( JsonValue v ) {
      unsigned const flag = readNamed( v, Classification::tcpFlagNames );
      if ( flags & flag ) {
         v.fail( "the flag stands in the list twice" );
      }
      flags |= flag;
   } );
   return static_cast< uint16_t >( flags );
}

void readIcmp( JsonValue & value, ProtoField & field ) {
   value.list( [&]( JsonValue entry ) {
      Classification::IcmpTypeRange type;
      auto const codes = Vorn::create< TypeAndCode >();
      entry.object( required( "type",
                              [&]( JsonValue & v ) {
                                 type = readRange< Classification::IcmpTypeRange >( v, icmpTypes );
                              } ),
                    optional( "codes", ranges( *codes, &TypeAndCode::icmpCodeIs, icmpCodes ) ) );
      if ( !field.icmpIs( type, codes ) ) {
         entry.fail( "the type stands in the list twice" );
      }
   } );
}

// A single protocol is shown by its name, which the shows know for IP alone.
ProtocolRange readProtocolRange( JsonValue & value, ClassMapMatchOption family ) {
   NumberKind const kind = protocolsOf( family );
   auto const range = readRange< ProtocolRange >( value, kind );
   if ( range.low == range.high && !kind.nameOf ) {
      std::string_view const name = PolicyMap::matchOptionName( family ).view();
      value.fail( "a match of the family " + std::string( name )
                  + " takes ranges of protocols, no single one" );
   }
   return range;
}

void readProtocol( JsonValue & value, StructuredFilter & filter, ClassMapMatchOption family ) {
   ProtocolRange protocol;
   auto const field = Vorn::create< ProtoField >();
   auto const number = [&]( JsonValue & v ) { protocol = readProtocolRange( v, family ); };
   auto const tcpFlags = [&]( JsonValue & v ) {
      uint16_t const flags = readTcpFlags( v );
      field->tcpFlagsIs( { flags, flags } );
   };
   value.object(
      required( "protocol", number ),
      optional( "sourcePorts", ranges( *field, &ProtoField::sportIs, ports ) ),
      optional( "sourcePortSets", setNames( *field, &ProtoField::sportFieldSetIs ) ),
      optional( "destinationPorts", ranges( *field, &ProtoField::dportIs, ports ) ),
      optional( "destinationPortSets", setNames( *field, &ProtoField::dportFieldSetIs ) ),
      optional( "tcpFlags", tcpFlags ),
      optional( "icmp", [&]( JsonValue & v ) { readIcmp( v, *field ); } ) );
   if ( !filter.protocolsIs( protocol, field ) ) {
      value.fail( "the protocol stands in the list twice" );
   }
}

Vorn::Ptr< Fragment const > readFragment( JsonValue & value ) {
   auto const fragment = Vorn::create< Fragment >();
   bool hasOffsets = false;
   auto const offsets = [&]( JsonValue & v ) {
      hasOffsets = true;
      ranges( *fragment, &Fragment::offsetIs, fragmentOffsets )( v );
   };
   auto const type = [&]( JsonValue & v ) {
      fragment->fragmentTypeIs( readEnum( v, Classification::fragmentTypes, FragmentType::all,
                                          FragmentType::offset, FragmentType::other ) );
   };
   value.object( required( "type", type ), optional( "offsets", offsets ) );
   if ( hasOffsets && fragment->fragmentType() != FragmentType::offset ) {
      value.fail( "only the type \"offset\" has offsets" );
   }
   return fragment;
}

Classification::RoutingProtocol readRoutingProtocol( JsonValue & value ) {
   return readEnum( value, Classification::routingProtocols, Classification::RoutingProtocol::bgp );
}

} // namespace

Vorn::Ptr< StructuredFilter const > readFilter( JsonValue & value, ClassMapMatchOption family ) {
   using Filter = StructuredFilter;
   auto const filter = Vorn::create< Filter >();
   auto const protocols = [&]( JsonValue & list ) {
      list.list( [&]( JsonValue v ) { readProtocol( v, *filter, family ); } );
   };
   auto const neighbor = [&]( JsonValue & v ) {
      filter->neighborProtocolIs( readRoutingProtocol( v ) );
   };
   auto const l4Protocol = [&]( JsonValue & v ) {
      filter->matchL4ProtocolIs( readRoutingProtocol( v ) );
   };
   value.object(
      optional( "sources", prefixes( *filter, &Filter::sourcesIs, family ) ),
      optional( "sourcePrefixSets", setNames( *filter, &Filter::srcPrefixSetsIs ) ),
      optional( "destinations", prefixes( *filter, &Filter::destinationsIs, family ) ),
      optional( "destinationPrefixSets", setNames( *filter, &Filter::dstPrefixSetsIs ) ),
      optional( "protocols", protocols ),
      optional( "lengths", ranges( *filter, &Filter::lengthIs, packetLengths ) ),
      optional( "fragment", [&]( JsonValue & v ) { filter->fragmentIs( readFragment( v ) ); } ),
      optional( "dscp", ranges( *filter, &Filter::dscpIs, dscpValues ) ),
      optional( "ttl", ranges( *filter, &Filter::ttlIs, ttls ) ),
      optional( "neighborProtocol", neighbor ), optional( "l4Protocol", l4Protocol ),
      optional( "ipOptions", [&]( JsonValue & v ) { filter->matchIpOptionsIs( v.boolean() ); } ) );
   if ( filter->sources() && filter->srcPrefixSets() ) {
      value.fail( "\"sources\" and \"sourcePrefixSets\" exclude each other" );
   }
   if ( filter->destinations() && filter->dstPrefixSets() ) {
      value.fail( "\"destinations\" and \"destinationPrefixSets\" exclude each other" );
   }
   return filter;
}

} // namespace tpcli
