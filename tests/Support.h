// What several tests need: random numbers, files that go away again, the reply of a show object.

#pragma once

#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"
#include "tests/TextBuffer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

namespace test {

// The same numbers on every run and machine.
class Random {
public:
   explicit Random( unsigned seed )
      : engine_( seed ) {}
   uint64_t operator()() { return engine_(); }
   unsigned below( unsigned limit ) { return static_cast< unsigned >( engine_() % limit ); }
   bool oneIn( unsigned count ) { return below( count ) == 0; }
   // As many small ones as large ones.
   uint64_t ofAnySize() { return engine_() >> below( 64 ); }

private:
   std::mt19937_64 engine_;
};

class TemporaryFolder {
public:
   TemporaryFolder() {
      std::string name = std::filesystem::temp_directory_path() / "tp-test-XXXXXX";
      EXPECT_NE( ::mkdtemp( name.data() ), nullptr );
      path_ = name;
   }
   ~TemporaryFolder() { std::filesystem::remove_all( path_ ); }
   TemporaryFolder( TemporaryFolder const & ) = delete;
   TemporaryFolder & operator=( TemporaryFolder const & ) = delete;

   std::string file( char const * name ) const { return path_ / name; }

private:
   std::filesystem::path path_;
};

inline void writeFile( std::string const & path, std::string_view text ) {
   std::ofstream( path, std::ios::binary ) << text;
}

inline std::string readFile( std::string const & path ) {
   std::ostringstream text;
   text << std::ifstream( path, std::ios::binary ).rdbuf();
   return text.str();
}

// What the show object writes to its descriptor, asked for revision 7. Format: 1 text, 2 JSON.
inline std::string reply( TrafficPolicyCli::ShowTrafficPolicyBase & show, unsigned format ) {
   int const fd =
      ::open( std::filesystem::temp_directory_path().c_str(), O_TMPFILE | O_RDWR, 0600 );
   EXPECT_GE( fd, 0 );
   show.render( static_cast< unsigned >( fd ), format, 7 );
   std::string text( static_cast< size_t >( ::lseek( fd, 0, SEEK_END ) ), ' ' );
   EXPECT_EQ( ::pread( fd, text.data(), text.size(), 0 ), static_cast< ssize_t >( text.size() ) );
   ::close( fd );
   return text;
}

} // namespace test
