#include "fuzz/Checks.h"
#include "fuzz/Targets.h"
#include "sources/sonic/AclTables.h"
#include "sources/sonic/SonicSwitch.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace fuzz {

namespace {

// Answers whatever it is asked with the bytes, to each connection anew.
class Server {
public:
   Server()
      : listener_( ::socket( AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0 ) ) {
      char folder[] = "/tmp/tp-fuzz-XXXXXX";
      require( ::mkdtemp( folder ) != nullptr, "no folder" );
      path_ = std::string( folder ) + "/socket";
      sockaddr_un address{};
      address.sun_family = AF_UNIX;
      path_.copy( address.sun_path, sizeof address.sun_path - 1 );
      require( ::bind( listener_, reinterpret_cast< sockaddr * >( &address ), sizeof address ) == 0
                  && ::listen( listener_, 8 ) == 0,
               "no server" );
      thread_ = std::thread( [this] { serve(); } );
   }
   ~Server() {
      ::shutdown( listener_, SHUT_RDWR );
      thread_.join();
      ::close( listener_ );
      ::unlink( path_.c_str() );
      ::rmdir( path_.substr( 0, path_.rfind( '/' ) ).c_str() );
   }
   Server( Server const & ) = delete;
   Server & operator=( Server const & ) = delete;

   std::string const & path() const { return path_; }
   void answerIs( std::string_view bytes ) {
      std::lock_guard const lock( mutex_ );
      answer_ = bytes;
   }

private:
   void serve() {
      for ( ;; ) {
         int const connection = ::accept( listener_, nullptr, nullptr );
         if ( connection < 0 ) {
            return;
         }
         std::string answer;
         {
            std::lock_guard const lock( mutex_ );
            answer = answer_;
         }
         static_cast< void >( ::send( connection, answer.data(), answer.size(), MSG_NOSIGNAL ) );
         ::shutdown( connection, SHUT_WR );
         char asked[4096];
         while ( ::read( connection, asked, sizeof asked ) > 0 ) {
         }
         ::close( connection );
      }
   }

   int listener_;
   std::string path_;
   std::mutex mutex_;
   std::string answer_;
   std::thread thread_;
};

} // namespace

void redis( std::string_view bytes ) {
   static Server server;
   server.answerIs( bytes );
   tpcli::DatabasePlaces places;
   for ( tpcli::DatabasePlace & place : places ) {
      place.server.unixPath = server.path();
   }
   tpcli::Reading reading;
   try {
      tpcli::SwitchHashes hashes(
         places, "sonic:fuzz",
         { .connect = std::chrono::seconds( 1 ), .answer = std::chrono::milliseconds( 200 ) } );
      tpcli::readAclTables( hashes, reading );
   } catch ( tpcli::FileError const & error ) {
      require( std::string_view( error.what() ).starts_with( "sonic:fuzz" ), error.what() );
      return;
   }
   checkCommands( reading.state );
   checkClear( reading.state );
}

} // namespace fuzz
