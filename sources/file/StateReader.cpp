#include "cli/StateReader.h"

namespace tpcli {

State readState( std::string const & path ) {
   State state;
   readJson( path, [&]( JsonValue root ) {
      root.object( optional( "config", [&]( JsonValue & v ) { readConfig( v, state ); } ),
                   optional( "status", [&]( JsonValue & v ) { readStatus( v, state ); } ) );
   } );
   return state;
}

} // namespace tpcli
