#include "sources/StateFolder.h"

#include "sources/FileError.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace tpcli {

namespace {

std::string environment( char const * name ) {
   char const * const value = std::getenv( name );
   return value ? value : "";
}

} // namespace

std::string counterStoreOf( std::string_view name ) {
   if ( std::string const named = environment( "TPCLI_COUNTER_STORE" ); !named.empty() ) {
      return named;
   }
   std::string folder = environment( "XDG_STATE_HOME" );
   if ( !folder.starts_with( '/' ) ) {
      // A relative one is to be ignored.
      std::string const home = environment( "HOME" );
      if ( home.empty() ) {
         return "";
      }
      folder = home + "/.local/state";
   }
   return folder.append( "/tpcli/" ).append( name ).append( ".counters" );
}

void makeFoldersOf( std::string const & path ) {
   for ( size_t slash = path.find( '/', 1 ); slash != path.npos;
         slash = path.find( '/', slash + 1 ) ) {
      std::string const folder = path.substr( 0, slash );
      if ( ::mkdir( folder.c_str(), 0700 ) < 0 && errno != EEXIST && errno != EROFS ) {
         throw FileError( folder + ": " + std::strerror( errno ) );
      }
   }
}

} // namespace tpcli
