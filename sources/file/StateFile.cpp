#include "sources/file/StateFile.h"

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

Reading StateFile::read() {
   InputFile file( path_ );
   return { readState( file ), {} };
}

std::string StateFile::defaultCounterStore() const {
   return path_ == "-" ? "" : path_ + ".counters";
}

} // namespace tpcli
