#include "sources/openconfig/ConditionReader.h"

#include "sources/openconfig/IcmpIdentities.h"
#include "sources/openconfig/Members.h"
#include "sources/rules/Texts.h"

#include <algorithm>

namespace tpcli {

namespace {

using Classification::FragmentType;
using Classification::TcpFlagAndMask;

constexpr uint32_t portMax = 65535;
constexpr uint32_t offsetMax = 8191;

struct ProtocolRow {
   std::string_view name;
   uint8_t number;
};
constexpr ProtocolRow protocols[] = {
   { "IP_TCP", 6 },   { "IP_UDP", 17 }, { "IP_ICMP", 1 },  { "IP_IGMP", 2 },   { "IP_PIM", 103 },
   { "IP_RSVP", 46 }, { "IP_GRE", 47 }, { "IP_AUTH", 51 }, { "IP_L2TP", 115 }, { "IP_IN_IP", 4 },
};

// A number, or "low..high".
template< typename Range >
std::optional< Range > parseRange( JsonNode const & value, uint32_t maximum ) {
   size_t const dots = value.text.find( ".." );
   auto const low = parseNumber( value.text.substr( 0, dots ), maximum );
   auto const high =
      dots == value.text.npos ? low : parseNumber( value.text.substr( dots + 2 ), maximum );
   if ( !value.isScalar() || !low || !high || *low > *high ) {
      return std::nullopt;
   }
   return Range{ { static_cast< uint32_t >( *low ), static_cast< uint32_t >( *high ) } };
}

bool isAny( JsonNode const & value ) {
   return identity( value.text ) == "ANY";
}

} // namespace

constexpr ConditionReader::LeafRow ConditionReader::ipLeaves[] = {
   { "source-address", &ConditionReader::address< Side::source > },
   { "destination-address", &ConditionReader::address< Side::destination > },
   { "source-address-prefix-set", &ConditionReader::prefixSet< Side::source > },
   { "destination-address-prefix-set", &ConditionReader::prefixSet< Side::destination > },
   { "protocol", &ConditionReader::protocol },
   { "dscp", &ConditionReader::numbers< &Filter::dscpIs, 63 > },
   { "dscp-set", &ConditionReader::numbers< &Filter::dscpIs, 63 > },
   { "length", &ConditionReader::numbers< &Filter::lengthIs, 65535 > },
   { "hop-limit", &ConditionReader::numbers< &Filter::ttlIs, 255 > },
   { "fragment-offsets", &ConditionReader::fragmentOffsets },
};

constexpr ConditionReader::LeafRow ConditionReader::transportLeaves[] = {
   { "source-port", &ConditionReader::ports< Side::source > },
   { "destination-port", &ConditionReader::ports< Side::destination > },
   { "source-port-set", &ConditionReader::portSet< Side::source > },
   { "destination-port-set", &ConditionReader::portSet< Side::destination > },
   { "builtin-detail", &ConditionReader::builtinDetail },
   // How the two details are to be taken.
   { "detail-mode", &ConditionReader::nothing },
   { "explicit-detail-match-mode", &ConditionReader::nothing },
};

template< size_t count >
void ConditionReader::readLeaves( JsonNode const & container, LeafRow const ( &rows )[count] ) {
   forEachLeaf( container, [&]( JsonNode const & leaf ) {
      std::string_view const name = localName( leaf.name );
      auto const row = std::ranges::find( rows, name, &LeafRow::name );
      if ( row != std::end( rows ) ) {
         ( this->*row->read )( leaf );
      } else {
         cannotShow( name );
      }
   } );
}

void ConditionReader::ip( JsonNode const & container ) {
   readLeaves( container, ipLeaves );
   std::string_view const icmpName = isIp6() ? "icmpv6" : "icmpv4";
   for ( JsonNode const & child : container ) {
      std::string_view const name = localName( child.name );
      if ( name == icmpName ) {
         icmp( child );
      } else if ( name != "config" && name != "state" && saysAnything( child ) ) {
         cannotShow( name );
      }
   }
}

void ConditionReader::transport( JsonNode const & container ) {
   readLeaves( container, transportLeaves );
   for ( JsonNode const & child : container ) {
      std::string_view const name = localName( child.name );
      if ( name != "config" && name != "state" && saysAnything( child ) ) {
         cannotShow( name );
      }
   }
}

void ConditionReader::cannotShow( std::string_view what ) {
   place_.note( notes_, std::string( what ) + " cannot be shown" );
}

void ConditionReader::notUnderstood( Leaf const & leaf, JsonNode const & value ) {
   std::string text( localName( leaf.name ) );
   text += value.isScalar() ? " \"" + std::string( value.text ) + "\"" : " of another kind";
   place_.note( notes_, text + " is not understood" );
}

void ConditionReader::checkDefined( std::string_view kind, NameSet const & names,
                                    std::string_view name ) {
   if ( !names.contains( name ) ) {
      place_.note( notes_,
                   "the " + std::string( kind ) + " " + std::string( name ) + " is not defined" );
   }
}

template< ConditionReader::Side side >
void ConditionReader::address( Leaf const & leaf ) {
   auto const prefix = parsePrefix( leaf.text, family_ );
   if ( !leaf.isScalar() || !prefix ) {
      notUnderstood( leaf, leaf );
   } else if ( side == Side::source ) {
      conditions_.filter().sourcesIs( *prefix );
   } else {
      conditions_.filter().destinationsIs( *prefix );
   }
}

template< ConditionReader::Side side >
void ConditionReader::prefixSet( Leaf const & leaf ) {
   if ( leaf.kind != JsonNode::Kind::string || leaf.text.empty() ) {
      notUnderstood( leaf, leaf );
      return;
   }
   checkDefined( isIp6() ? "ipv6-prefix-set" : "ipv4-prefix-set",
                 isIp6() ? sets_.ip6Prefixes : sets_.ip4Prefixes, leaf.text );
   if ( side == Side::source ) {
      conditions_.filter().srcPrefixSetsIs( leaf.text );
   } else {
      conditions_.filter().dstPrefixSetsIs( leaf.text );
   }
}

void ConditionReader::protocol( Leaf const & leaf ) {
   auto const row = std::ranges::find( protocols, identity( leaf.text ), &ProtocolRow::name );
   auto const number = parseNumber( leaf.text, 255 );
   if ( row != std::end( protocols ) ) {
      conditions_.protocol = row->number;
   } else if ( number && leaf.isScalar() ) {
      conditions_.protocol = static_cast< uint8_t >( *number );
   } else {
      notUnderstood( leaf, leaf );
   }
}

template< auto insert, uint32_t maximum >
void ConditionReader::numbers( Leaf const & leaf ) {
   forEachValue( leaf, [&]( JsonNode const & value ) {
      auto const number = parseNumber( value.text, maximum );
      if ( number && value.isScalar() ) {
         auto const bound = static_cast< uint32_t >( *number );
         ( conditions_.filter().*insert )( { { bound, bound } } );
      } else {
         notUnderstood( leaf, value );
      }
   } );
}

void ConditionReader::fragmentOffsets( Leaf const & leaf ) {
   forEachValue( leaf, [&]( JsonNode const & value ) {
      if ( isAny( value ) ) {
         isAnyOffset_ = true;
      } else if ( auto const range =
                     parseRange< Classification::FragmentOffsetRange >( value, offsetMax ) ) {
         offsets_.push_back( *range );
      } else {
         notUnderstood( leaf, value );
      }
   } );
}

template< ConditionReader::Side side >
void ConditionReader::ports( Leaf const & leaf ) {
   forEachValue( leaf, [&]( JsonNode const & value ) {
      if ( auto const range = parseRange< Classification::PortRange >( value, portMax ) ) {
         portsOf( side ).ranges.push_back( *range );
      } else if ( !isAny( value ) ) {
         notUnderstood( leaf, value );
      }
   } );
}

template< ConditionReader::Side side >
void ConditionReader::portSet( Leaf const & leaf ) {
   if ( leaf.kind != JsonNode::Kind::string || leaf.text.empty() ) {
      notUnderstood( leaf, leaf );
      return;
   }
   checkDefined( "port-set", sets_.ports, leaf.text );
   portsOf( side ).sets.emplace_back( leaf.text );
}

void ConditionReader::builtinDetail( Leaf const & leaf ) {
   forEachValue( leaf, [&]( JsonNode const & value ) {
      std::string_view const detail = identity( value.text );
      if ( detail == "FRAGMENT" ) {
         isFragment_ = true;
         return;
      }
      unsigned const flag = detail == "TCP_INITIAL"       ? TcpFlagAndMask::initialSyn
                            : detail == "TCP_ESTABLISHED" ? TcpFlagAndMask::established
                                                          : 0;
      if ( flag == 0 ) {
         notUnderstood( leaf, value );
      }
      conditions_.tcpFlags = static_cast< uint16_t >( conditions_.tcpFlags | flag );
      conditions_.tcpFlagsBy = "builtin-detail";
   } );
}

void ConditionReader::icmp( JsonNode const & container ) {
   Leaf const * const type = leaf( &container, "type" );
   Leaf const * const code = leaf( &container, "code" );
   forEachLeaf( container, [&]( JsonNode const & other ) {
      std::string_view const name = localName( other.name );
      if ( name != "type" && name != "code" ) {
         cannotShow( name );
      }
   } );
   if ( !type && !code ) {
      return;
   }
   conditions_.icmpBy = isIp6() ? "icmpv6" : "icmpv4";
   auto const typeNumber = type ? icmpType( isIp6(), type->text ) : std::nullopt;
   auto const codeNumber = code ? icmpCode( isIp6(), code->text ) : std::nullopt;
   if ( typeNumber ) {
      conditions_.icmpType = { { *typeNumber, *typeNumber } };
   } else if ( type ) {
      notUnderstood( *type, *type );
   }
   if ( code && !codeNumber ) {
      notUnderstood( *code, *code );
   } else if ( code && !type ) {
      place_.note( notes_, "an ICMP code without a type cannot be shown" );
   } else if ( code && typeNumber ) {
      conditions_.icmpCode = { { *codeNumber, *codeNumber } };
   }
}

Vorn::Ptr< Classification::StructuredFilter const > ConditionReader::finish() {
   Filter & filter = conditions_.filter();
   if ( filter.sources() && filter.srcPrefixSets() ) {
      cannotShow( "source-address-prefix-set beside an address" );
      filter.srcPrefixSetsDelAll();
   }
   if ( filter.destinations() && filter.dstPrefixSets() ) {
      cannotShow( "destination-address-prefix-set beside an address" );
      filter.dstPrefixSetsDelAll();
   }
   bool const hasOffsets = !offsets_.empty() && !isAnyOffset_;
   if ( isFragment_ && hasOffsets ) {
      cannotShow( "builtin-detail FRAGMENT beside fragment-offsets" );
   }
   if ( isFragment_ || hasOffsets ) {
      auto const fragment = Vorn::create< Classification::Fragment >();
      fragment->fragmentTypeIs( hasOffsets ? FragmentType::offset : FragmentType::all );
      for ( auto const & range : hasOffsets ? offsets_ : decltype( offsets_ )() ) {
         fragment->offsetIs( range );
      }
      filter.fragmentIs( fragment );
   }
   return conditions_.finish( family_, [&]( std::string_view what ) {
      cannotShow( std::string( what ) + " under another protocol" );
   } );
}

} // namespace tpcli
