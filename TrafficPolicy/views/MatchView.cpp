#include "TrafficPolicy/views/MatchView.h"

#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/vorn/DescribeAttributes.h"
#include "TrafficPolicy/views/ListWriters.h"
#include "TrafficPolicy/views/ProtocolView.h"

namespace TrafficPolicyCli {

namespace {

using Classification::Fragment;
using Classification::FragmentType;
using Classification::RoutingProtocol;
using Classification::StructuredFilter;
using wendo::JsonKey;
using wendo::RendererV2;

// A condition that the record gains is one more call below.
static_assert( Vorn::declaredLines< StructuredFilter >.size() == 12 );
static_assert( Vorn::declaredLines< Fragment >.size() == 2 );

void renderAddresses( RendererV2 & renderer, StructuredFilter const * structuredFilter,
                      unsigned indent ) {
   static constexpr CliLabel source( "Source prefix" );
   static constexpr CliLabel sourceSet = CliLabel::fieldSet( "Source prefix" );
   static constexpr CliLabel destination( "Destination prefix" );
   static constexpr CliLabel destinationSet = CliLabel::fieldSet( "Destination prefix" );
   if ( structuredFilter->sources() ) {
      VORN_ASSERT( !structuredFilter->srcPrefixSets() );
      renderPrefixSet( renderer, source, structuredFilter->sources(), indent );
   } else if ( structuredFilter->srcPrefixSets() ) {
      VORN_ASSERT( !structuredFilter->sources() );
      renderFieldSet( renderer, sourceSet, structuredFilter->srcPrefixSets(), indent );
   }
   if ( structuredFilter->destinations() ) {
      VORN_ASSERT( !structuredFilter->dstPrefixSets() );
      renderPrefixSet( renderer, destination, structuredFilter->destinations(), indent );
   } else if ( structuredFilter->dstPrefixSets() ) {
      VORN_ASSERT( !structuredFilter->destinations() );
      renderFieldSet( renderer, destinationSet, structuredFilter->dstPrefixSets(), indent );
   }
}

// A condition that is one line of text and one member.
template< typename Value >
void renderFlag( RendererV2 & renderer, PlainText const & line, JsonKey const & key,
                 Value const & value, unsigned indent ) {
   renderer.text( wendo::indentation( indent ), line, '\n' );
   renderer.addJsonKeyValuePair( key, value );
}

void renderFragment( RendererV2 & renderer, Fragment const & fragment, unsigned indent,
                     ClassMapMatchOption matchOption ) {
   static constexpr JsonKey key( "fragment" );
   static constexpr JsonKey matchAllFragments( "matchAllFragments" );
   static constexpr CliLabel offset( "Fragment: offset" );
   switch ( fragment.fragmentType() ) {
   case FragmentType::all: {
      auto const object = renderer.object( key );
      renderFlag( renderer, "Fragment: all", matchAllFragments, true, indent );
      break;
   }
   case FragmentType::offset:
      if ( fragment.offset() ) {
         auto const object = renderer.object( key );
         renderNumericalRange( renderer, offset, fragment.offset(), indent, matchOption );
      }
      break;
   case FragmentType::other:
      break; // has no form in the output
   }
}

} // namespace

void renderMatches( RendererV2 & renderer, PolicyState const & policyState,
                    PolicyMap::ClassMapMatch const & classMapMatch, unsigned indent ) {
   static constexpr JsonKey matches( "matches" );
   static constexpr JsonKey neighborProtocol( "neighborProtocol" );
   static constexpr JsonKey matchL4Protocol( "matchL4Protocol" );
   static constexpr JsonKey matchIpOptions( "matchIpOptions" );
   static constexpr CliLabel ipLength( "IP length" );
   static constexpr CliLabel dscp( "DSCP" );
   static constexpr CliLabel ttl( "TTL" );

   StructuredFilter const * filter = classMapMatch.structuredFilter().get();
   if ( !filter ) {
      trace.write( 7, "void TrafficPolicyCli::renderMatches(wendo::RendererV2&, const PtrConst&, "
                      "const PtrConst&, U32) structured filter not found" );
      return;
   }
   ClassMapMatchOption const option = classMapMatch.matchOption();
   auto const object = renderer.object( matches );
   renderAddresses( renderer, filter, indent );
   if ( filter->protocols() ) {
      renderProtocol( renderer, *filter, indent, policyState.indentCountPerLevel(), option );
   }
   if ( filter->length() ) {
      renderNumericalRange( renderer, ipLength, filter->length(), indent, option );
   }
   if ( filter->fragment() ) {
      renderFragment( renderer, *filter->fragment(), indent, option );
   }
   if ( filter->dscp() ) {
      renderNumericalRange( renderer, dscp, filter->dscp(), indent, option );
   }
   if ( filter->ttl() ) {
      renderNumericalRange( renderer, ttl, filter->ttl(), indent, option );
   }
   if ( filter->neighborProtocol() == RoutingProtocol::bgp ) {
      renderFlag( renderer, "protocol neighbors bgp", neighborProtocol,
                  Classification::routingProtocols[RoutingProtocol::bgp], indent );
   }
   if ( filter->matchL4Protocol() == RoutingProtocol::bgp ) {
      renderFlag( renderer, "protocol bgp", matchL4Protocol,
                  Classification::routingProtocols[RoutingProtocol::bgp], indent );
   }
   if ( filter->matchIpOptions() ) {
      renderFlag( renderer, "IP options: all", matchIpOptions, true, indent );
   }
}

} // namespace TrafficPolicyCli
