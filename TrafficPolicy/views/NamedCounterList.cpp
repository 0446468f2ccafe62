#include "TrafficPolicy/views/NamedCounterList.h"

#include "TrafficPolicy/model/Columns.h"

namespace TrafficPolicyCli {

void renderNamedCounter( wendo::RendererV2 & renderer, PolicyState const & policyState ) {
   static constexpr wendo::JsonKey namedCounters( "namedCounters" );
   if ( !policyState.namedCounter() ) {
      return;
   }
   auto const list = renderer.list( namedCounters );
   renderer.text( wendo::indentation( Columns::namedCounters ), "counter" );
   for ( auto const & [name, declared] : policyState.namedCounter() ) {
      renderer.addJsonKeyValuePair( wendo::listElement, name );
      renderer.addText( " ", name );
   }
   renderer.eol();
}

} // namespace TrafficPolicyCli
