#include "TrafficPolicy/views/NamedCounterList.h"

namespace TrafficPolicyCli {

void renderNamedCounter( wendo::RendererV2 & renderer, PolicyState const & policyState ) {
   static constexpr wendo::JsonKey namedCounters( "namedCounters" );
   static constexpr unsigned indent = 6;
   if ( !policyState.namedCounter() ) {
      return;
   }
   renderer.startJsonList( namedCounters );
   if ( renderer.isText() ) {
      renderer.write( wendo::indentation( indent ), "counter" );
   }
   for ( auto const & [name, declared] : policyState.namedCounter() ) {
      renderer.addJsonKeyValuePair( wendo::listElement, name );
      renderer.addText( " ", name );
   }
   renderer.eol();
   renderer.endJsonList();
}

} // namespace TrafficPolicyCli
