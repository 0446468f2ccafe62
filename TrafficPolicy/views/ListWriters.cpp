#include "TrafficPolicy/views/ListWriters.h"

#include "TrafficPolicy/platform/values/NameTables.h"

namespace TrafficPolicyCli {

std::string_view numericalValueToStrFor( CliLabel const & label, uint32_t value,
                                         ClassMapMatchOption matchOption ) {
   if ( label.text() == "DSCP" ) {
      return Names::dscp( value );
   }
   if ( label.text() != "Protocol" ) {
      return {};
   }
   switch ( matchOption ) {
   case ClassMapMatchOption::ipv4:
      return Names::ipv4Protocol( value );
   case ClassMapMatchOption::ipv6:
      return Names::ipv6Protocol( value );
   default:
      VORN_ASSERT( false && "Unrecognized match option" );
   }
   return {};
}

void writeRange( wendo::RendererV2 & renderer, CliLabel const & label,
                 Classification::NumericalRange const & range, ClassMapMatchOption matchOption ) {
   if ( range.low != range.high ) {
      renderer.writeString( range.low );
      renderer.writeString( "-" );
      renderer.writeString( range.high );
      return;
   }
   std::string_view const name = numericalValueToStrFor( label, range.low, matchOption );
   if ( name.empty() ) {
      renderer.writeString( range.low );
   } else {
      renderer.writeString( name );
   }
}

void renderPrefixSet( wendo::RendererV2 & renderer, CliLabel const & label,
                      Vorn::HashSet< Pelx::IpGenPrefix > const & prefixes, unsigned indent ) {
   traceList( "void TrafficPolicyCli::renderPrefixSet(wendo::RendererV2&, Vorn::String, "
              "const Set&, U32) ",
              label );
   renderSorted< Pelx::IpGenPrefix >(
      renderer, label, prefixes, indent, [&]( Pelx::IpGenPrefix const & prefix ) {
         if ( renderer.isJson() ) {
            renderer._addJsonKeyValuePair( wendo::listElement, prefix );
         } else if ( renderer.isText() ) {
            renderer.writeString( prefix );
         }
      } );
}

void renderFieldSet( wendo::RendererV2 & renderer, CliLabel const & label,
                     Vorn::HashSet< Vorn::String > const & names, unsigned indent ) {
   traceList( "void TrafficPolicyCli::renderFieldSet(wendo::RendererV2&, Vorn::String, "
              "const Set&, U32) ",
              label );
   renderSorted< Vorn::String >( renderer, label, names, indent, [&]( Vorn::String const & name ) {
      if ( renderer.isJson() ) {
         renderer._addJsonKeyValuePair( wendo::listElement, name );
      } else if ( renderer.isText() ) {
         renderer.writeString( "field-set " );
         renderer.writeString( name );
      }
   } );
}

} // namespace TrafficPolicyCli
