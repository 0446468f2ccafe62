#include "sources/redis/RedisConnection.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/FileError.h"
#include "sources/redis/HostLookup.h"

#include <hiredis/hiredis.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <new>

namespace tpcli {

namespace {

constexpr size_t wordsMax = 8; // of a request

std::string seconds( std::chrono::milliseconds time ) {
   return std::to_string( time.count() / 1000 ) + " seconds";
}

} // namespace

void RedisConnection::Free::operator()( redisContext * context ) const {
   redisFree( context );
}

void RedisConnection::Free::operator()( redisReply * reply ) const {
   freeReplyObject( reply );
}

RedisConnection::RedisConnection( RedisAddress const & address, std::string name,
                                  RedisTimeouts const & timeouts )
   : name_( std::move( name ) )
   , timeouts_( timeouts ) {
   auto const deadline = Clock::now() + timeouts_.connect;
   if ( address.unixPath.empty() ) {
      HostAddress const host = lookUpHost( address.host, deadline );
      if ( host.text.empty() ) {
         fail( host.error );
      }
      context_.reset( redisConnectNonBlock( host.text.c_str(), address.port ) );
   } else {
      context_.reset( redisConnectUnixNonBlock( address.unixPath.c_str() ) );
   }
   if ( !context_ ) {
      throw std::bad_alloc();
   }
   if ( context_->err != 0 ) {
      fail( context_->errstr );
   }
   finishConnecting( deadline );
}

void RedisConnection::finishConnecting( Clock::time_point deadline ) {
   wait( true, deadline, "no connection within " + seconds( timeouts_.connect ) );
   int error = 0;
   socklen_t size = sizeof error;
   if ( ::getsockopt( context_->fd, SOL_SOCKET, SO_ERROR, &error, &size ) < 0 ) {
      error = errno;
   }
   if ( error != 0 ) {
      fail( std::strerror( error ) );
   }
}

void RedisConnection::fail( std::string_view what ) const {
   throw FileError( name_, std::string( what ) );
}

void RedisConnection::check( int result ) const {
   if ( result != REDIS_OK ) {
      fail( context_->errstr );
   }
}

void RedisConnection::wait( bool writing, Clock::time_point deadline,
                            std::string_view forWhat ) const {
   using std::chrono::milliseconds;
   pollfd socket{ .fd = context_->fd,
                  .events = static_cast< short >( writing ? POLLIN | POLLOUT : POLLIN ),
                  .revents = 0 };
   for ( ;; ) {
      wendo::interrupt::check();
      auto const left = std::chrono::ceil< milliseconds >( deadline - Clock::now() ).count();
      if ( left <= 0 ) {
         fail( forWhat );
      }
      // A signal just before the wait does not end it, so that it is short.
      int const ready =
         ::poll( &socket, 1, static_cast< int >( std::min< int64_t >( left, 100 ) ) );
      if ( ready > 0 ) {
         return;
      }
      if ( ready < 0 && errno != EINTR ) {
         fail( std::strerror( errno ) );
      }
   }
}

void RedisConnection::send( std::initializer_list< std::string_view > words ) {
   std::array< char const *, wordsMax > texts{};
   std::array< size_t, wordsMax > sizes{};
   size_t count = 0;
   for ( std::string_view const word : words ) {
      texts.at( count ) = word.data();
      sizes.at( count++ ) = word.size();
   }
   check( redisAppendCommandArgv( context_.get(), static_cast< int >( count ), texts.data(),
                                  sizes.data() ) );
}

RedisConnection::Reply RedisConnection::receive() {
   bool written = false;
   auto const deadline = Clock::now() + timeouts_.answer;
   for ( ;; ) {
      void * reply = nullptr;
      check( redisGetReplyFromReader( context_.get(), &reply ) );
      if ( reply ) {
         return Reply( static_cast< redisReply * >( reply ) );
      }
      if ( !written ) {
         int done = 0;
         check( redisBufferWrite( context_.get(), &done ) );
         written = done != 0;
      }
      wait( !written, deadline, "no answer within " + seconds( timeouts_.answer ) );
      // Nothing to read is no error here.
      check( redisBufferRead( context_.get() ) );
   }
}

RedisConnection::Reply RedisConnection::ask( std::initializer_list< std::string_view > words ) {
   send( words );
   return receive();
}

} // namespace tpcli
