#include "sources/rules/Conditions.h"

namespace tpcli {

using Classification::ProtoField;

Vorn::Ptr< ProtoField const > Conditions::field( uint8_t number, bool isIcmp ) const {
   auto const field = Vorn::create< ProtoField >();
   for ( auto const & range : source.ranges ) {
      field->sportIs( range );
   }
   for ( Vorn::String const & set : source.sets ) {
      field->sportFieldSetIs( set );
   }
   for ( auto const & range : destination.ranges ) {
      field->dportIs( range );
   }
   for ( Vorn::String const & set : destination.sets ) {
      field->dportFieldSetIs( set );
   }
   if ( number == Protocol::tcp && tcpFlags != 0 ) {
      field->tcpFlagsIs( { tcpFlags, tcpFlags } );
   }
   if ( isIcmp && icmpType ) {
      auto const codes = Vorn::create< Classification::TypeAndCode >();
      if ( icmpCode ) {
         codes->icmpCodeIs( *icmpCode );
      }
      field->icmpIs( *icmpType, codes );
   }
   return field;
}

Vorn::Ptr< Conditions::Filter const >
Conditions::finish( PolicyMap::ClassMapMatchOption family,
                    std::function< void( std::string_view ) > const & note ) {
   uint8_t const icmp =
      family == PolicyMap::ClassMapMatchOption::ipv6 ? Protocol::icmp6 : Protocol::icmp;
   bool const hasPorts = !source.ranges.empty() || !source.sets.empty()
                         || !destination.ranges.empty() || !destination.sets.empty();
   uint8_t first = protocol.value_or( 0 );
   bool isTcpAndUdp = false;
   if ( !protocol ) {
      isTcpAndUdp = icmpBy.empty() && tcpFlags == 0 && hasPorts;
      first = !icmpBy.empty() ? icmp : Protocol::tcp;
      if ( icmpBy.empty() && tcpFlags == 0 && !hasPorts ) {
         return filter_;
      }
   }
   if ( !icmpBy.empty() && first != icmp ) {
      note( icmpBy );
   }
   if ( tcpFlags != 0 && first != Protocol::tcp ) {
      note( tcpFlagsBy );
   }
   filter_->protocolsIs( { { first, first } }, field( first, first == icmp ) );
   if ( isTcpAndUdp ) {
      filter_->protocolsIs( { { Protocol::udp, Protocol::udp } }, field( Protocol::udp, false ) );
   }
   return filter_;
}

} // namespace tpcli
