#include "sources/redis/HostLookup.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <thread>

namespace tpcli {

namespace {

using Clock = std::chrono::steady_clock;

// IPv6 where there is no IPv4, in the order of the client library.
HostAddress resolve( std::string const & host, int flags ) {
   HostAddress address;
   for ( int const family : { AF_INET, AF_INET6 } ) {
      addrinfo hints{};
      hints.ai_family = family;
      hints.ai_socktype = SOCK_STREAM;
      hints.ai_flags = flags;
      addrinfo * found = nullptr;
      int error = ::getaddrinfo( host.c_str(), nullptr, &hints, &found );
      if ( error == 0 ) {
         std::unique_ptr< addrinfo, void ( * )( addrinfo * ) > const owner( found, ::freeaddrinfo );
         char text[NI_MAXHOST];
         error = ::getnameinfo( found->ai_addr, found->ai_addrlen, text, sizeof text, nullptr, 0,
                                NI_NUMERICHOST );
         if ( error == 0 ) {
            return { text, "" };
         }
      }
      address.error = ::gai_strerror( error );
   }
   return address;
}

// What a thread finds, and perhaps nobody wants any more.
class Search {
public:
   void run( std::string const & host ) noexcept {
      HostAddress address;
      try {
         address = resolve( host, 0 );
      } catch ( std::bad_alloc const & ) {
         address.error = "out of memory";
      }
      std::lock_guard const lock( mutex_ );
      result_ = std::move( address );
      ended_.notify_all();
   }

   // In short steps, since a signal does not end the wait. Nothing: not found so far.
   std::optional< HostAddress > await( Clock::time_point deadline ) {
      std::unique_lock lock( mutex_ );
      while ( !result_ && Clock::now() < deadline ) {
         wendo::interrupt::check();
         ended_.wait_until( lock,
                            std::min( deadline, Clock::now() + std::chrono::milliseconds( 50 ) ) );
      }
      return result_;
   }

private:
   std::mutex mutex_;
   std::condition_variable ended_;
   std::optional< HostAddress > result_;
};

// All signals are for the thread that waits.
class BlockedSignals {
public:
   BlockedSignals() {
      sigset_t all;
      ::sigfillset( &all );
      ::pthread_sigmask( SIG_SETMASK, &all, &before_ );
   }
   BlockedSignals( BlockedSignals const & ) = delete;
   BlockedSignals & operator=( BlockedSignals const & ) = delete;
   ~BlockedSignals() { ::pthread_sigmask( SIG_SETMASK, &before_, nullptr ); }

private:
   sigset_t before_{};
};

} // namespace

HostAddress lookUpHost( std::string const & host, Clock::time_point deadline ) {
   if ( HostAddress address = resolve( host, AI_NUMERICHOST ); !address.text.empty() ) {
      return address;
   }
   auto const search = std::make_shared< Search >();
   {
      BlockedSignals const blocked;
      std::thread( [search, host] { search->run( host ); } ).detach();
   }
   auto const found = search->await( deadline );
   return found ? *found : HostAddress{ "", "the name is not resolved in time" };
}

} // namespace tpcli
