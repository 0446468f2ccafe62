// The state file as a whole.

#include "sources/file/StateReader.h"

namespace tpcli {

State readState( InputFile & file ) {
   State state;
   readJson( file, [&]( JsonValue & root ) {
      root.object( optional( "config", [&]( JsonValue & v ) { readConfig( v, state ); } ),
                   optional( "status", [&]( JsonValue & v ) { readStatus( v, state ); } ) );
   } );
   return state;
}

} // namespace tpcli
