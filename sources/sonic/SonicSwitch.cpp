#include "sources/sonic/SonicSwitch.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/StateFolder.h"
#include "sources/sonic/AclTables.h"

#include <hiredis/hiredis.h>

#include <algorithm>
#include <cstdlib>

namespace tpcli {

namespace {

// Requests under way at once: enough that waiting for answers costs nothing, and not so many that
// the server has to keep them.
constexpr size_t pipelineDepth = 512;

std::string_view textOf( redisReply const & reply ) {
   return { reply.str, reply.len };
}

bool isError( redisReply const & reply, std::string_view begin = "" ) {
   return reply.type == REDIS_REPLY_ERROR && textOf( reply ).starts_with( begin );
}

bool isTexts( redisReply const & reply ) {
   return reply.type == REDIS_REPLY_ARRAY
          && std::all_of( reply.element, reply.element + reply.elements,
                          []( redisReply const * r ) { return r->type == REDIS_REPLY_STRING; } );
}

} // namespace

void SwitchHashes::select( RedisConnection & connection, unsigned number ) const {
   auto reply = connection.ask( { "SELECT", std::to_string( number ) } );
   char const * const password = std::getenv( "TPCLI_REDIS_PASSWORD" );
   if ( isError( *reply, "NOAUTH" ) && password && *password != '\0' ) {
      reply = connection.ask( { "AUTH", password } );
      if ( !isError( *reply ) ) {
         reply = connection.ask( { "SELECT", std::to_string( number ) } );
      }
   }
   if ( isError( *reply ) ) {
      connection.fail( std::string( textOf( *reply ) )
                       + ( isError( *reply, "NOAUTH" ) ? " (set TPCLI_REDIS_PASSWORD)" : "" ) );
   }
}

RedisConnection & SwitchHashes::connection( SonicDatabase database ) {
   auto const at = static_cast< size_t >( database );
   auto & connection = connections_[at];
   if ( !connection ) {
      connection.emplace( places_[at].server, name_ + ": " + std::string( nameOf( database ) ),
                          timeouts_ );
      select( *connection, places_[at].number );
   }
   return *connection;
}

std::vector< std::string_view > SwitchHashes::keys( SonicDatabase database,
                                                    std::string_view begin ) {
   RedisConnection & server = connection( database );
   std::vector< std::string_view > keys;
   std::string cursor = "0";
   do {
      auto const reply =
         server.ask( { "SCAN", cursor, "MATCH", std::string( begin ) + "*", "COUNT", "1000" } );
      if ( isError( *reply ) ) {
         server.fail( textOf( *reply ) );
      }
      if ( reply->type != REDIS_REPLY_ARRAY || reply->elements != 2
           || reply->element[0]->type != REDIS_REPLY_STRING || !isTexts( *reply->element[1] ) ) {
         server.fail( "not an answer to SCAN" );
      }
      cursor = textOf( *reply->element[0] );
      for ( size_t at = 0; at < reply->element[1]->elements; ++at ) {
         keys.push_back( keys_.copy( textOf( *reply->element[1]->element[at] ) ) );
      }
   } while ( cursor != "0" );
   // A scan may give a key several times.
   std::ranges::sort( keys );
   keys.erase( std::unique( keys.begin(), keys.end() ), keys.end() );
   return keys;
}

void SwitchHashes::fetch( SonicDatabase database, std::string_view prefix,
                          std::vector< std::string_view > const & names, Take const & take ) {
   RedisConnection & server = connection( database );
   Fields fields;
   std::string key( prefix );
   size_t sent = 0;
   for ( size_t at = 0; at < names.size(); ++at ) {
      wendo::interrupt::check();
      // The pipeline is filled again when it is half empty.
      if ( sent <= at + pipelineDepth / 2 ) {
         for ( ; sent < names.size() && sent < at + pipelineDepth; ++sent ) {
            key.resize( prefix.size() );
            server.send( { "HGETALL", key.append( names[sent] ) } );
         }
      }
      auto const reply = server.receive();
      auto const fail = [&]( std::string_view what ) {
         server.fail( std::string( prefix ).append( names[at] ).append( ": " ).append( what ) );
      };
      if ( isError( *reply ) ) {
         fail( textOf( *reply ) );
      }
      if ( !isTexts( *reply ) || reply->elements % 2 != 0 ) {
         fail( "not an answer to HGETALL" );
      }
      fields.clear();
      for ( size_t field = 0; field < reply->elements; field += 2 ) {
         fields.emplace_back( textOf( *reply->element[field] ),
                              textOf( *reply->element[field + 1] ) );
      }
      take( at, fields );
   }
}

Reading SonicSwitch::read() {
   Reading reading;
   SwitchHashes hashes( findDatabases( text_.substr( text_.find( ':' ) + 1 ) ), text_ );
   readAclTables( hashes, reading );
   return reading;
}

std::string SonicSwitch::defaultCounterStore() const {
   return counterStoreOf( "sonic" );
}

} // namespace tpcli
