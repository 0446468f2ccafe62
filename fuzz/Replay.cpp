// Runs the targets on files, without a fuzzer: those of FOLDER/TARGET, or one of them.
// Usage: tp_fuzz_replay FOLDER | tp_fuzz_replay TARGET FILE

#include "fuzz/Targets.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

void runFile( fuzz::Target const & target, std::filesystem::path const & path ) {
   std::ostringstream bytes;
   bytes << std::ifstream( path, std::ios::binary ).rdbuf();
   // Told before it is run, in case that ends the process.
   std::printf( "%s %s\n", std::string( target.name ).c_str(), path.filename().c_str() );
   std::fflush( stdout );
   target.run( bytes.str() );
}

// Returns how many there were.
size_t runFolder( fuzz::Target const & target, std::filesystem::path const & folder ) {
   size_t count = 0;
   for ( auto const & entry : std::filesystem::directory_iterator( folder ) ) {
      runFile( target, entry.path() );
      ++count;
   }
   return count;
}

} // namespace

int main( int argc, char ** argv ) {
   for ( fuzz::Target const & target : fuzz::targets ) {
      if ( argc == 2 && runFolder( target, std::filesystem::path( argv[1] ) / target.name ) == 0 ) {
         return EXIT_FAILURE;
      }
      if ( argc == 3 && target.name == argv[1] ) {
         runFile( target, argv[2] );
      }
   }
   return EXIT_SUCCESS;
}
