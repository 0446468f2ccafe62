#include "TrafficPolicy/views/ListWriters.h"

#include "TrafficPolicy/platform/values/NameTables.h"

namespace TrafficPolicyCli {

PlainText const & numericalValueToStrFor( CliLabel const & label, uint32_t value,
                                          ClassMapMatchOption matchOption ) {
   static constexpr PlainText none;
   if ( label.names() == ValueNames::dscp ) {
      return Names::dscp( value );
   }
   if ( label.names() != ValueNames::protocol ) {
      return none;
   }
   switch ( matchOption ) {
   case ClassMapMatchOption::ipv4:
      return Names::ipv4Protocol( value );
   case ClassMapMatchOption::ipv6:
      return Names::ipv6Protocol( value );
   case ClassMapMatchOption::mac:
   case ClassMapMatchOption::mpls:
      break;
   }
   VORN_ASSERT( false && "Unrecognized match option" );
   return none;
}

void writeRange( wendo::RendererV2 & renderer, LineBegin begin, CliLabel const & label,
                 Classification::NumericalRange const & range, ClassMapMatchOption matchOption ) {
   if ( range.low != range.high ) {
      renderer.write( begin, range.low, '-', range.high, '\n' );
      return;
   }
   PlainText const & name = numericalValueToStrFor( label, range.low, matchOption );
   if ( name.empty() ) {
      renderer.write( begin, range.low, '\n' );
   } else {
      renderer.write( begin, name, '\n' );
   }
}

void renderPrefixSet( wendo::RendererV2 & renderer, CliLabel const & label,
                      Vorn::HashSet< Pelx::IpGenPrefix > const & prefixes, unsigned indent ) {
   traceList( "void TrafficPolicyCli::renderPrefixSet(wendo::RendererV2&, Vorn::String, "
              "const Set&, U32) ",
              label );
   renderSorted( renderer, label, prefixes, indent,
                 [&]( LineBegin begin, Pelx::IpGenPrefix const & prefix ) {
                    renderer.write( begin, prefix, '\n' );
                 } );
}

void renderFieldSet( wendo::RendererV2 & renderer, CliLabel const & label,
                     Vorn::HashSet< Vorn::String > const & names, unsigned indent ) {
   traceList( "void TrafficPolicyCli::renderFieldSet(wendo::RendererV2&, Vorn::String, "
              "const Set&, U32) ",
              label );
   renderSorted( renderer, label, names, indent, [&]( LineBegin begin, Vorn::String const & name ) {
      renderer.write( begin, "field-set ", name, '\n' );
   } );
}

} // namespace TrafficPolicyCli
