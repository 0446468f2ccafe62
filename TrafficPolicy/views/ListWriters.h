// The list writers of match conditions: prefixes, field-sets and ranges, each in ascending order.
//
// In text a list begins with its label; further values stand on lines of their own, in the column
// of the first.

#pragma once

#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/records/MatchRecords.h"
#include "TrafficPolicy/views/CliLabel.h"
#include "TrafficPolicy/views/RendererV2.h"
#include "TrafficPolicy/views/SortedView.h"

namespace TrafficPolicyCli {

using PolicyMap::ClassMapMatchOption;

// The well-known name of a DSCP value or of a protocol number (for the rule's address family);
// empty when the value has none or the label names another kind of value.
std::string_view numericalValueToStrFor( CliLabel const & label, uint32_t value,
                                         ClassMapMatchOption matchOption );

// The beginnings of a list's text lines.
class ListLines {
public:
   // Writes the indent and the label.
   ListLines( wendo::RendererV2 & renderer, CliLabel const & label, unsigned indent )
      : renderer_( renderer )
      , column_( indent + label.width() ) {
      if ( renderer.isText() ) {
         renderer.writeString( wendo::indentation( indent ) );
         renderer.writeString( label.text() );
         renderer.writeString( ": " );
      }
   }
   // Before each value, in text: the first stands behind the label, others under it.
   void next() {
      if ( !first_ ) {
         renderer_.writeString( wendo::indentation( column_ ) );
      }
      first_ = false;
   }

private:
   wendo::RendererV2 & renderer_;
   unsigned column_;
   bool first_ = true;
};

// A range in text: the name or number of a single value, or both bounds.
void writeRange( wendo::RendererV2 & renderer, CliLabel const & label,
                 Classification::NumericalRange const & range, ClassMapMatchOption matchOption );

// The trace of a list writer on entry, and after its key is known.
inline void traceList( Vorn::TraceText const & signature, CliLabel const & label ) {
   trace.write( 8, signature, label.text() );
   trace.write( 8, { "", signature.function }, label.text(), " --> ", label.key().name() );
}

// A list whose elements are written by one call each.
template< typename Element, typename Writer >
void renderSorted( wendo::RendererV2 & renderer, CliLabel const & label, auto const & elements,
                   unsigned indent, Writer const & writer ) {
   ListLines lines( renderer, label, indent );
   renderer.startJsonList( label.key() );
   forEachSorted< Element >( elements, [&]( Element const & element ) {
      if ( renderer.isText() ) {
         lines.next();
      }
      writer( element );
      renderer.eol();
   } );
   renderer.endJsonList();
}

void renderPrefixSet( wendo::RendererV2 & renderer, CliLabel const & label,
                      Vorn::HashSet< Pelx::IpGenPrefix > const & prefixes, unsigned indent );

// The label is one made by CliLabel::fieldSet.
void renderFieldSet( wendo::RendererV2 & renderer, CliLabel const & label,
                     Vorn::HashSet< Vorn::String > const & names, unsigned indent );

// The match option is the rule's; it matters only where single values have names.
template< typename Range >
void renderNumericalRange( wendo::RendererV2 & renderer, CliLabel const & label,
                           Vorn::HashSet< Range > const & ranges, unsigned indent,
                           ClassMapMatchOption matchOption ) {
   traceList( "void TrafficPolicyCli::renderNumericalRange(wendo::RendererV2&, Vorn::String, "
              "const Set&, U32, PolicyMap::ClassMapMatchOption) ",
              label );
   renderSorted< Range >( renderer, label, ranges, indent, [&]( Range const & range ) {
      if ( renderer.isJson() ) {
         renderer._addJsonRangeEntry( range.low, range.high );
      } else if ( renderer.isText() ) {
         writeRange( renderer, label, range, matchOption );
      }
   } );
}

} // namespace TrafficPolicyCli
