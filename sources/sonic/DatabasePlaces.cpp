#include "sources/sonic/DatabasePlaces.h"

#include "sources/FileError.h"
#include "sources/json/JsonTree.h"
#include "sources/rules/Texts.h"

#include <sys/un.h>
#include <unistd.h>

namespace tpcli {

namespace {

constexpr SonicDatabase databases[] = { SonicDatabase::config, SonicDatabase::counters,
                                        SonicDatabase::state };
constexpr unsigned usualNumbers[] = { 4, 2, 6 };
constexpr uint64_t portMax = 65535;
constexpr uint64_t numberMax = 100'000;

DatabasePlaces allAt( RedisAddress const & server ) {
   DatabasePlaces places;
   for ( size_t at = 0; at < places.size(); ++at ) {
      places[at] = { server, usualNumbers[at] };
   }
   return places;
}

JsonNode const & needed( JsonTree const & tree, JsonNode const & node, std::string_view name ) {
   for ( JsonNode const & child : node ) {
      if ( child.name == name ) {
         return child;
      }
   }
   tree.fail( node, "the member \"" + std::string( name ) + "\" is missing" );
}

std::string textOf( JsonNode const & node, std::string_view name ) {
   for ( JsonNode const & child : node ) {
      if ( child.name == name ) {
         return std::string( child.text );
      }
   }
   return "";
}

RedisAddress serverOf( JsonTree const & tree, JsonNode const & instance ) {
   RedisAddress address;
   address.unixPath = textOf( instance, "unix_socket_path" );
   if ( address.unixPath.size() >= sizeof( sockaddr_un::sun_path ) ) {
      tree.fail( instance, "the path of the socket is too long" );
   }
   if ( address.unixPath.empty() ) {
      address.host = needed( tree, instance, "hostname" ).text;
      JsonNode const & node = needed( tree, instance, "port" );
      auto const port = parseNumber( node.text, portMax );
      if ( !port || *port == 0 ) {
         tree.fail( node, "not a port" );
      }
      address.port = static_cast< int >( *port );
   }
   return address;
}

DatabasePlaces readPlaces( std::string const & file ) {
   InputFile text( file );
   JsonTree const tree( text );
   JsonNode const & instances = needed( tree, tree.root(), "INSTANCES" );
   JsonNode const & known = needed( tree, tree.root(), "DATABASES" );
   DatabasePlaces places;
   for ( SonicDatabase const database : databases ) {
      JsonNode const & entry = needed( tree, known, nameOf( database ) );
      JsonNode const & id = needed( tree, entry, "id" );
      auto const number = parseNumber( id.text, numberMax );
      if ( !number ) {
         tree.fail( id, "not the number of a database" );
      }
      places[static_cast< size_t >( database )] = {
         serverOf( tree, needed( tree, instances, needed( tree, entry, "instance" ).text ) ),
         static_cast< unsigned >( *number )
      };
   }
   return places;
}

// HOST, HOST:PORT, or with the host in brackets, as an IPv6 address needs it.
RedisAddress parseHost( std::string const & text ) {
   RedisAddress address;
   bool const inBrackets = text.starts_with( '[' );
   size_t const hostEnd = inBrackets ? text.find( ']' ) : text.find( ':' );
   std::string const rest =
      hostEnd == text.npos ? "" : text.substr( hostEnd + ( inBrackets ? 1 : 0 ) );
   address.host = inBrackets ? text.substr( 1, hostEnd - 1 ) : text.substr( 0, hostEnd );
   if ( !rest.empty() ) {
      auto const port = parseNumber( std::string_view( rest ).substr( 1 ), portMax );
      address.port = static_cast< int >( port.value_or( 0 ) );
   }
   if ( address.host.empty() || address.port == 0 || ( !rest.empty() && rest[0] != ':' )
        || ( inBrackets && hostEnd == text.npos ) ) {
      throw FileError( "sonic:" + text, "neither unix:PATH nor HOST[:PORT]" );
   }
   return address;
}

} // namespace

DatabasePlaces findDatabases( std::string const & text, std::string const & file ) {
   constexpr std::string_view unixPrefix = "unix:";
   if ( text.starts_with( unixPrefix ) ) {
      RedisAddress address;
      address.unixPath = text.substr( unixPrefix.size() );
      // A longer one would be cut.
      if ( address.unixPath.empty()
           || address.unixPath.size() >= sizeof( sockaddr_un::sun_path ) ) {
         throw FileError( "sonic:" + text,
                          "a socket's path has 1 to "
                             + std::to_string( sizeof( sockaddr_un::sun_path ) - 1 ) + " bytes" );
      }
      return allAt( address );
   }
   if ( !text.empty() ) {
      return allAt( parseHost( text ) );
   }
   if ( ::access( file.c_str(), F_OK ) == 0 ) {
      return readPlaces( file );
   }
   RedisAddress usual;
   usual.unixPath = "/var/run/redis/redis.sock";
   return allAt( usual );
}

} // namespace tpcli
