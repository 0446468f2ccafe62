#include "sources/file/StateFile.h"

#include "sources/file/StateReader.h"

namespace tpcli {

Reading StateFile::read() {
   Reading reading;
   State & state = reading.state;
   readJson( path_, [&]( JsonValue root ) {
      root.object( optional( "config", [&]( JsonValue & v ) { readConfig( v, state ); } ),
                   optional( "status", [&]( JsonValue & v ) { readStatus( v, state ); } ) );
   } );
   return reading;
}

std::string StateFile::defaultCounterStore() const {
   return path_ == "-" ? "" : path_ + ".counters";
}

} // namespace tpcli
