#include "TrafficPolicy/views/ProtocolView.h"

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

using Protocols = Vorn::HashMap< ProtocolRange, Vorn::Ptr< ProtoField const > >;
using ProtocolEntry = Vorn::HashMapEntry< ProtocolRange, Vorn::Ptr< ProtoField const > >;
using IcmpEntry = Vorn::HashMapEntry< Classification::IcmpTypeRange,
                                      Vorn::Ptr< Classification::TypeAndCode const > >;

bool hasConditions( ProtoField const & field ) {
   return field.sport() || field.sportFieldSet() || field.dport() || field.dportFieldSet()
          || field.icmp() || !( field.tcpFlags() == TcpFlagAndMask() );
}

bool isPlain( auto const & protocols ) {
   for ( auto const & [range, field] : protocols ) {
      if ( hasConditions( *field ) ) {
         return false;
      }
   }
   return true;
}

void renderTcpFlags( RendererV2 & renderer, TcpFlagAndMask const & tcpFlags, unsigned indent ) {
   static constexpr CliLabel label( "TCP flags" );
   static constexpr JsonKey nameKey( "name" );
   static constexpr JsonKey valueKey( "value" );
   static constexpr struct {
      uint16_t bit;
      PlainText name;
   } known[] = { { TcpFlagAndMask::initialSyn, "initial-syn" },
                 { TcpFlagAndMask::established, "established" } };

   ListLines lines( label.heading(), indent );
   renderer.startJsonList( label.key() );
   for ( auto const & [bit, name] : known ) {
      if ( !( tcpFlags.flags & bit ) ) {
         continue;
      }
      if ( renderer.isJson() ) {
         renderer._addJsonListEntry( JsonMember{ nameKey, name }, JsonMember{ valueKey, true } );
      } else if ( renderer.isText() ) {
         renderer.write( lines.next(), name, ":1\n" );
      }
   }
   // The label has its line even when no bit has a name.
   if ( !( tcpFlags.flags & ( TcpFlagAndMask::initialSyn | TcpFlagAndMask::established ) )
        && renderer.isText() ) {
      renderer.write( lines.next(), '\n' );
   }
   renderer.endJsonList();
}

void renderIcmpCodes( RendererV2 & renderer, Classification::TypeAndCode const & type,
                      unsigned indent, ClassMapMatchOption matchOption ) {
   static constexpr CliLabel label( "ICMP code" );
   if ( type.icmpCode() ) {
      renderNumericalRange( renderer, label, type.icmpCode(), indent, matchOption );
   } else if ( renderer.isText() ) {
      renderer.write( wendo::indentation( indent ), "ICMP code: all\n" );
   }
}

void renderIcmp( RendererV2 & renderer, ProtoField const & field, unsigned indent,
                 ClassMapMatchOption matchOption ) {
   static constexpr CliLabel label( "ICMP type" );
   static constexpr JsonKey icmps( "icmps" );
   SortedView< IcmpEntry > const types( field.icmp() );
   ListLines lines( label.heading(), indent );
   renderer.startJsonList( icmps );
   for ( IcmpEntry const * type : types ) {
      if ( renderer.isJson() ) {
         renderer._startJsonListEntry( JsonMember{ label.key(), type->key } );
      } else if ( renderer.isText() ) {
         writeRange( renderer, lines.next(), label, type->key, matchOption );
      }
      renderIcmpCodes( renderer, *type->value, indent, matchOption );
      renderer.endJsonListEntry();
   }
   renderer.endJsonList();
}

// The conditions of one protocol.
void renderConditions( RendererV2 & renderer, ProtocolRange const & range, ProtoField const & field,
                       unsigned indent, ClassMapMatchOption matchOption ) {
   static constexpr CliLabel sourcePort( "Source port" );
   static constexpr CliLabel sourcePortSet = CliLabel::fieldSet( "Source port" );
   static constexpr CliLabel destinationPort( "Destination port" );
   static constexpr CliLabel destinationPortSet = CliLabel::fieldSet( "Destination port" );
   // Flags belong to TCP: on any other protocol, or a range that includes it, they are not shown.
   if ( range.low == tcp && range.high == tcp && !( field.tcpFlags() == TcpFlagAndMask() ) ) {
      renderTcpFlags( renderer, field.tcpFlags(), indent );
   }
   if ( field.sport() ) {
      renderNumericalRange( renderer, sourcePort, field.sport(), indent, matchOption );
   }
   if ( field.sportFieldSet() ) {
      renderFieldSet( renderer, sourcePortSet, field.sportFieldSet(), indent );
   }
   if ( field.dport() ) {
      renderNumericalRange( renderer, destinationPort, field.dport(), indent, matchOption );
   }
   if ( field.dportFieldSet() ) {
      renderFieldSet( renderer, destinationPortSet, field.dportFieldSet(), indent );
   }
   if ( field.icmp() ) {
      renderIcmp( renderer, field, indent, matchOption );
   }
}

void renderProtocolsJson( RendererV2 & renderer, Protocols const & protocols,
                          ClassMapMatchOption matchOption ) {
   static constexpr JsonKey protocolRange( "protocolRange" );
   renderer._startJsonList( protocolLabel.key() );
   for ( ProtocolEntry const * protocol : SortedView< ProtocolEntry >( protocols ) ) {
      renderer._startJsonListEntry( JsonMember{ protocolRange, protocol->key } );
      renderConditions( renderer, protocol->key, *protocol->value, 0, matchOption );
      renderer.endJsonListEntry();
   }
   renderer.endJsonList();
}

void renderProtocolsText( RendererV2 & renderer, Protocols const & protocols, unsigned indent,
                          unsigned step, ClassMapMatchOption matchOption ) {
   bool const plain = isPlain( protocols );
   ListLines lines( protocolLabel.heading(), indent );
   for ( ProtocolEntry const * protocol : SortedView< ProtocolEntry >( protocols ) ) {
      writeRange( renderer, lines.next(), protocolLabel, protocol->key, matchOption );
      if ( !plain ) {
         renderConditions( renderer, protocol->key, *protocol->value, indent + step, matchOption );
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
