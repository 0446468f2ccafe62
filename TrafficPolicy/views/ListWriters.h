// The list writers of match conditions: prefixes, field-sets and ranges, each in ascending order.
//
// In text a list begins with its label; each further value has a line of its own, aligned with the
// first. An empty list has no line.

#pragma once

#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/records/MatchRecords.h"
#include "TrafficPolicy/views/CliLabel.h"
#include "TrafficPolicy/views/RendererV2.h"
#include "TrafficPolicy/views/SortedView.h"

namespace TrafficPolicyCli {

using PolicyMap::ClassMapMatchOption;
using wendo::LineBegin;

// The well-known name of a DSCP value or of a protocol number (for the rule's address family);
// empty when the value has none or the label names another kind of value.
PlainText const & numericalValueToStrFor( CliLabel const & label, uint32_t value,
                                          ClassMapMatchOption matchOption );

// The beginnings of a list's lines: the heading for the first value, spaces as wide for others.
class ListLines {
public:
   ListLines( PlainText const & heading, unsigned indent )
      : indent_( indent )
      , heading_( &heading ) {}
   // Called before each value.
   LineBegin next() {
      static constexpr PlainText none;
      LineBegin const line{ wendo::indentation( indent_ ), *heading_ };
      indent_ += static_cast< unsigned >( heading_->size() );
      heading_ = &none;
      return line;
   }

private:
   unsigned indent_;
   PlainText const * heading_;
};

// A text line with a range: the name or number of a single value, or both bounds.
void writeRange( wendo::RendererV2 & renderer, LineBegin begin, CliLabel const & label,
                 Classification::NumericalRange const & range, ClassMapMatchOption matchOption );

// The trace of a list writer on entry, and after its key is known.
inline void traceList( Vorn::TraceText const & signature, CliLabel const & label ) {
   trace.write( 8, signature, label.text().view() );
   trace.write( 8, { "", signature.function }, label.text().view(), " --> ", label.key().name() );
}

// A list: in JSON of its elements as they are, in text of lines by the function, which gets the
// line's beginning and the element.
template< typename Element, typename LineWriter >
void renderSorted( wendo::RendererV2 & renderer, CliLabel const & label,
                   Vorn::HashSet< Element > const & elements, unsigned indent,
                   LineWriter const & writeLine ) {
   SortedView< Element > const sorted( elements );
   if ( renderer.isJson() ) {
      renderer._addJsonList( label.key(), sorted );
   } else if ( renderer.isText() ) {
      ListLines lines( label.heading(), indent );
      for ( Element const * element : sorted ) {
         writeLine( lines.next(), *element );
      }
   }
}

void renderPrefixSet( wendo::RendererV2 & renderer, CliLabel const & label,
                      Vorn::HashSet< Pelx::IpGenPrefix > const & prefixes, unsigned indent );

// The label is made by CliLabel::fieldSet.
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
   renderSorted( renderer, label, ranges, indent, [&]( LineBegin begin, Range const & range ) {
      writeRange( renderer, begin, label, range, matchOption );
   } );
}

} // namespace TrafficPolicyCli
