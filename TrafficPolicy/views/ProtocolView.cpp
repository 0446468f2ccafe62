#include "TrafficPolicy/views/ProtocolView.h"

#include "TrafficPolicy/platform/vorn/DescribeAttributes.h"
#include "TrafficPolicy/views/ListWriters.h"

namespace TrafficPolicyCli {

namespace {

using Classification::ProtocolRange;
using Classification::ProtoField;
using Classification::TcpFlagAndMask;
using wendo::JsonKey;
using wendo::JsonMember;
using wendo::RendererV2;

constexpr CliLabel protocolLabel( "Protocol" );
constexpr uint32_t tcp = 6; // RFC 9293
constexpr char missingField[] = "ProtoField not found for protocol ";

using Protocols = Vorn::HashMap< ProtocolRange, Vorn::Ptr< ProtoField const > >;
using ProtocolEntry = Vorn::HashMapEntry< ProtocolRange, Vorn::Ptr< ProtoField const > >;
using IcmpEntry = Vorn::HashMapEntry< Classification::IcmpTypeRange,
                                      Vorn::Ptr< Classification::TypeAndCode const > >;

// The entry's record, or null with a trace: then the entry is skipped.
template< typename Entry >
auto const * recordOf( Entry const & entry, char const * missing ) {
   if ( !entry.value ) {
      trace.write( 7, { missing, "renderProtocol" }, entry.key.low, "-", entry.key.high );
   }
   return entry.value.get();
}

void renderTcpFlags( RendererV2 & renderer, TcpFlagAndMask const & tcpFlags, unsigned indent ) {
   static constexpr CliLabel label( "TCP flags" );
   static constexpr JsonKey nameKey( "name" );
   static constexpr JsonKey valueKey( "value" );
   ListLines lines( label.heading(), indent );
   auto const list = renderer.list( label.key() );
   bool anyKnown = false;
   for ( auto const & [bit, name] : Classification::tcpFlagNames ) {
      if ( !( tcpFlags.flags & bit ) ) {
         continue;
      }
      anyKnown = true;
      if ( renderer.isJson() ) {
         renderer._addJsonListEntry( JsonMember{ nameKey, name }, JsonMember{ valueKey, true } );
      } else {
         renderer.text( lines.next(), name, ":1\n" );
      }
   }
   // The label has its line even when no bit has a name.
   if ( !anyKnown ) {
      renderer.text( lines.next(), '\n' );
   }
}

void renderIcmpCodes( RendererV2 & renderer, Classification::TypeAndCode const & type,
                      unsigned indent, ClassMapMatchOption matchOption ) {
   static constexpr CliLabel label( "ICMP code" );
   if ( type.icmpCode() ) {
      renderNumericalRange( renderer, label, type.icmpCode(), indent, matchOption );
   } else {
      renderer.text( wendo::indentation( indent ), "ICMP code: all\n" );
   }
}

void renderIcmp( RendererV2 & renderer, ProtoField const & field, unsigned indent,
                 ClassMapMatchOption matchOption ) {
   static constexpr CliLabel label( "ICMP type" );
   static constexpr JsonKey icmps( "icmps" );
   ListLines lines( label.heading(), indent );
   auto const list = renderer.list( icmps );
   for ( IcmpEntry const * entry : SortedView< IcmpEntry >( field.icmp() ) ) {
      auto const * type = recordOf( *entry, "TypeAndCode not found for ICMP type " );
      if ( !type ) {
         continue;
      }
      auto const object = renderer.listEntry( JsonMember{ label.key(), entry->key } );
      if ( renderer.isText() ) {
         writeRange( renderer, lines.next(), label, entry->key, matchOption );
      }
      renderIcmpCodes( renderer, *type, indent, matchOption );
   }
}

// Where and for which rule conditions are written.
struct Context {
   RendererV2 & renderer;
   unsigned indent;
   ClassMapMatchOption matchOption;
};

// A condition that the record gains has its place in the walk below.
static_assert( Vorn::declaredLines< ProtoField >.size() == 6 );
static_assert( Vorn::declaredLines< Classification::TypeAndCode >.size() == 1 );

// Calls visit( has, write ) for each kind of condition, in output order, until it returns true:
// whether the protocol has the condition, and the function that writes it. Returns the last result.
template< typename Visit >
bool visitConditions( ProtocolRange const & range, ProtoField const & field, Visit const & visit ) {
   static constexpr CliLabel sourcePort( "Source port" );
   static constexpr CliLabel sourcePortSet = CliLabel::fieldSet( "Source port" );
   static constexpr CliLabel destinationPort( "Destination port" );
   static constexpr CliLabel destinationPortSet = CliLabel::fieldSet( "Destination port" );
   auto const tcpFlags = [&]( Context const & to ) {
      // Flags belong to TCP: on another protocol, or a range that includes it, they are not shown.
      if ( range.low == tcp && range.high == tcp ) {
         renderTcpFlags( to.renderer, field.tcpFlags(), to.indent );
      }
   };
   auto const ranges = [&]( CliLabel const & label, auto const & values ) {
      return visit( !values.empty(), [&]( Context const & to ) {
         renderNumericalRange( to.renderer, label, values, to.indent, to.matchOption );
      } );
   };
   auto const fieldSets = [&]( CliLabel const & label, auto const & names ) {
      return visit( !names.empty(), [&]( Context const & to ) {
         renderFieldSet( to.renderer, label, names, to.indent );
      } );
   };
   auto const icmp = [&]( Context const & to ) {
      renderIcmp( to.renderer, field, to.indent, to.matchOption );
   };
   return visit( field.tcpFlags() != TcpFlagAndMask(), tcpFlags )
          || ranges( sourcePort, field.sport() )
          || fieldSets( sourcePortSet, field.sportFieldSet() )
          || ranges( destinationPort, field.dport() )
          || fieldSets( destinationPortSet, field.dportFieldSet() )
          || visit( !field.icmp().empty(), icmp );
}

// No protocol has a condition of its own.
bool isPlain( Protocols const & protocols ) {
   for ( auto const & [range, field] : protocols ) {
      if ( field
           && visitConditions( range, *field, []( bool has, auto const & ) { return has; } ) ) {
         return false;
      }
   }
   return true;
}

void renderConditions( Context const & to, ProtocolRange const & range, ProtoField const & field ) {
   visitConditions( range, field, [&]( bool has, auto const & write ) {
      if ( has ) {
         write( to );
      }
      return false;
   } );
}

void renderProtocolsJson( RendererV2 & renderer, Protocols const & protocols,
                          ClassMapMatchOption matchOption ) {
   static constexpr JsonKey protocolRange( "protocolRange" );
   auto const list = renderer.list( protocolLabel.key() );
   for ( ProtocolEntry const * protocol : SortedView< ProtocolEntry >( protocols ) ) {
      if ( auto const * field = recordOf( *protocol, missingField ) ) {
         auto const entry = renderer.listEntry( JsonMember{ protocolRange, protocol->key } );
         renderConditions( { renderer, 0, matchOption }, protocol->key, *field );
      }
   }
}

void renderProtocolsText( RendererV2 & renderer, Protocols const & protocols, unsigned indent,
                          unsigned step, ClassMapMatchOption matchOption ) {
   bool const plain = isPlain( protocols );
   ListLines lines( protocolLabel.heading(), indent );
   for ( ProtocolEntry const * protocol : SortedView< ProtocolEntry >( protocols ) ) {
      auto const * field = recordOf( *protocol, missingField );
      if ( !field ) {
         continue;
      }
      writeRange( renderer, lines.next(), protocolLabel, protocol->key, matchOption );
      if ( !plain ) {
         renderConditions( { renderer, indent + step, matchOption }, protocol->key, *field );
         lines = ListLines( protocolLabel.heading(), indent );
      }
   }
}

} // namespace

void renderProtocol( RendererV2 & renderer,
                     Classification::StructuredFilter const & structuredFilter, unsigned indent,
                     unsigned step, ClassMapMatchOption matchOption ) {
   traceList( "void TrafficPolicyCli::renderProtocol(wendo::RendererV2&, Vorn::String, "
              "const PtrConst&, U32, U32, PolicyMap::ClassMapMatchOption) ",
              protocolLabel );
   if ( renderer.isJson() ) {
      renderProtocolsJson( renderer, structuredFilter.protocols(), matchOption );
   } else if ( renderer.isText() ) {
      renderProtocolsText( renderer, structuredFilter.protocols(), indent, step, matchOption );
   }
}

} // namespace TrafficPolicyCli
