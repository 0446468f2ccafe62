// Servers that keep a client waiting.

#ifdef TP_SONIC

#include "sources/redis/RedisConnection.h"

#include "sources/FileError.h"
#include "sources/sonic/DatabasePlaces.h"
#include "tests/Support.h"

#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace {

using tpcli::RedisAddress;
using tpcli::RedisConnection;
using tpcli::RedisTimeouts;

// A server on loopback that accepts nobody.
class SilentServer {
public:
   explicit SilentServer( int backlog )
      : fd_( ::socket( AF_INET, SOCK_STREAM, 0 ) ) {
      sockaddr_in address{};
      socklen_t size = sizeof address;
      address.sin_family = AF_INET;
      address.sin_addr.s_addr = htonl( INADDR_LOOPBACK );
      EXPECT_EQ( ::bind( fd_, reinterpret_cast< sockaddr * >( &address ), size ), 0 );
      EXPECT_EQ( ::listen( fd_, backlog ), 0 );
      EXPECT_EQ( ::getsockname( fd_, reinterpret_cast< sockaddr * >( &address ), &size ), 0 );
      address_.host = "127.0.0.1";
      address_.port = ntohs( address.sin_port );
   }
   ~SilentServer() { ::close( fd_ ); }
   RedisAddress const & address() const { return address_; }

private:
   int fd_;
   RedisAddress address_;
};

RedisTimeouts const impatient{ .connect = std::chrono::milliseconds( 50 ),
                               .answer = std::chrono::milliseconds( 50 ) };

template< typename Function >
std::string error( Function const & function ) {
   try {
      function();
   } catch ( tpcli::FileError const & error ) {
      return error.what();
   }
   return "";
}

TEST( RedisConnection, WaitsNoLongerThanItsTimeouts ) {
   SilentServer const server( 8 );
   EXPECT_EQ(
      error( [&] { RedisConnection( server.address(), "here", impatient ).ask( { "PING" } ); } ),
      "here: no answer within 0 seconds" );
   // A name that nobody knows (RFC 6761, section 6.4), or no resolver answers for.
   RedisAddress const unknown{ .unixPath = "", .host = "leaf.invalid" };
   EXPECT_THAT( error( [&] { RedisConnection( unknown, "nowhere", impatient ); } ),
                testing::StartsWith( "nowhere: " ) );
   // Connections that nobody takes: some more than the server has room for.
   SilentServer const full( 0 );
   std::vector< RedisConnection > waiting;
   EXPECT_EQ( error( [&] {
                 for ( unsigned i = 0; i < 8; ++i ) {
                    waiting.emplace_back( full.address(), "there", impatient );
                 }
              } ),
              "there: no connection within 0 seconds" );
}

TEST( DatabasePlaces, AreFoundByTextOrFile ) {
   using tpcli::findDatabases;
   EXPECT_EQ( findDatabases( "unix:/a:b" )[0].server.unixPath, "/a:b" );
   EXPECT_EQ( findDatabases( "leaf" )[1].server.port, 6379 );
   EXPECT_EQ( findDatabases( "[::1]:70" )[2].server.host, "::1" );
   EXPECT_EQ( findDatabases( "", "/nowhere" )[2].server.unixPath, "/var/run/redis/redis.sock" );
   for ( char const * text :
         { ":1", "leaf:", "leaf:0", "leaf:65536", "[::1", "[::1]7", "a:b:1" } ) {
      EXPECT_THAT( error( [&] { findDatabases( text ); } ), testing::EndsWith( "HOST[:PORT]" ) );
   }
   for ( std::string const & path : { std::string(), std::string( 200, 'x' ) } ) {
      EXPECT_THAT( error( [&] { findDatabases( "unix:" + path ); } ),
                   testing::EndsWith( "a socket's path has 1 to 107 bytes" ) );
   }
   test::TemporaryFolder const folder;
   std::string const file = folder.file( "database_config.json" );
   test::writeFile( file, R"({"INSTANCES":{"redis":{"hostname":"127.0.0.1","port":6379,
"unix_socket_path":"/run/a.sock"},"two":{"hostname":"10.0.0.1","port":6380}},"DATABASES":{
"CONFIG_DB":{"id":14,"separator":"|","instance":"redis"},"COUNTERS_DB":{"id":12,"instance":"two"},
"STATE_DB":{"id":16,"instance":"redis"}},"VERSION":"1.0"})" );
   auto const places = findDatabases( "", file );
   EXPECT_EQ( places[0].server.unixPath, "/run/a.sock" );
   EXPECT_EQ( places[1].server.host, "10.0.0.1" );
   EXPECT_EQ( places[1].server.port, 6380 );
   EXPECT_EQ( places[2].number, 16u );
   test::writeFile( file, R"({"INSTANCES":{},"DATABASES":{"CONFIG_DB":{"instance":"x"}}})" );
   EXPECT_EQ( error( [&] { findDatabases( "", file ); } ),
              file + ": line 1, column 42: /DATABASES/CONFIG_DB: the member \"id\" is missing" );
}

} // namespace

#endif
