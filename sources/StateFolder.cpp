#include "sources/StateFolder.h"

#include "sources/FileError.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tpcli {

std::string stateFolder() {
   char const * const state = std::getenv( "XDG_STATE_HOME" );
   char const * const home = std::getenv( "HOME" );
   // The standard of these folders lets only absolute names count.
   if ( state && *state == '/' ) {
      return std::string( state ) + "/tpcli";
   }
   return home && *home == '/' ? std::string( home ) + "/.local/state/tpcli" : "";
}

std::string makeStateFolder() {
   std::string folder = stateFolder();
   std::error_code error;
   if ( !folder.empty() ) {
      std::filesystem::create_directories( folder, error );
   }
   return error ? "" : folder;
}

std::string counterStoreOf( std::string_view name ) {
   char const * const named = std::getenv( "TPCLI_COUNTER_STORE" );
   if ( named && *named ) {
      return named;
   }
   std::string const folder = stateFolder();
   return folder.empty() ? "" : folder + "/" + std::string( name ) + ".counters";
}

void makeFoldersOf( std::string const & path ) {
   std::filesystem::path const folder = std::filesystem::path( path ).parent_path();
   std::error_code error;
   if ( !folder.empty() ) {
      std::filesystem::create_directories( folder, error );
   }
   if ( error ) {
      throw FileError( folder.string(), "cannot make the folder: " + error.message() );
   }
}

} // namespace tpcli
