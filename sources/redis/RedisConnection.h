// A connection to a Redis server: requests in a pipeline, answers in their order.
//
// It never blocks: whatever it waits for ends at an interrupt, at once, or when the time is up.

#pragma once

#include <chrono>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

struct redisContext;
struct redisReply;

namespace tpcli {

struct RedisAddress {
   std::string unixPath; // a socket's path; empty: host and port
   std::string host;
   int port = 6379;
};

struct RedisTimeouts {
   std::chrono::milliseconds connect = std::chrono::seconds( 5 );
   std::chrono::milliseconds answer =
      std::chrono::seconds( 30 ); // to each request, once it is waited for
};

class RedisConnection {
public:
   struct Free {
      void operator()( redisContext * context ) const;
      void operator()( redisReply * reply ) const;
   };
   using Reply = std::unique_ptr< redisReply, Free >;

   // Connects. The name is for errors. All functions throw FileError and SigIntException.
   RedisConnection( RedisAddress const & address, std::string name,
                    RedisTimeouts const & timeouts = {} );
   RedisConnection( RedisConnection && ) = default;

   // Puts a request into the pipeline.
   void send( std::initializer_list< std::string_view > words );
   // The answer to the first request that has none so far; errors of the server are answers, too.
   Reply receive();
   // One request and its answer, with nothing else in the pipeline.
   Reply ask( std::initializer_list< std::string_view > words );

   [[noreturn]] void fail( std::string_view what ) const;

private:
   using Clock = std::chrono::steady_clock;

   void finishConnecting( Clock::time_point deadline );
   // Waits until the socket is ready for reading, or for writing where that is wanted, too.
   void wait( bool writing, Clock::time_point deadline, std::string_view forWhat ) const;
   void check( int result ) const;

   std::string name_;
   RedisTimeouts timeouts_;
   std::unique_ptr< redisContext, Free > context_;
};

} // namespace tpcli
