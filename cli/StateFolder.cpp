#include "cli/StateFolder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tpcli {

std::string makeStateFolder() {
   char const * const state = std::getenv( "XDG_STATE_HOME" );
   char const * const home = std::getenv( "HOME" );
   // The standard of these folders lets only absolute names count.
   bool const given = state && *state == '/';
   if ( !given && !( home && *home == '/' ) ) {
      return "";
   }
   std::string const base = given ? state : std::string( home ) + "/.local/state";
   std::error_code error;
   std::filesystem::create_directories( base + "/tpcli", error );
   return error ? "" : base + "/tpcli";
}

} // namespace tpcli
