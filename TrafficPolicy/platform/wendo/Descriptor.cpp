#include "TrafficPolicy/platform/wendo/Descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <exception>
#include <system_error>

namespace wendo {

namespace {

constexpr int awaitTime = 100; // ms

} // namespace

Descriptor::Descriptor( int fd )
   : fd_( fd ) {
   struct stat status {};
   int const flags = ::fcntl( fd, F_GETFL );
   if ( flags < 0 || ::fstat( fd, &status ) < 0 ) {
      return; // the first write reports the error
   }
   if ( flags & O_NONBLOCK ) {
      kind_ = Kind::nonBlocking;
   } else if ( S_ISSOCK( status.st_mode ) ) {
      kind_ = Kind::socket;
   } else if ( S_ISFIFO( status.st_mode ) || ( S_ISCHR( status.st_mode ) && ::isatty( fd ) ) ) {
      kind_ = Kind::blocking;
   }
}

Descriptor::~Descriptor() {
   if ( own_ >= 0 ) {
      ::close( own_ );
   }
}

int Descriptor::reopened() const {
#ifdef __linux__
   char path[32];
   std::snprintf( path, sizeof path, "/proc/self/fd/%d", fd_ );
   return ::open( path, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC );
#else
   return -1;
#endif
}

bool Descriptor::isReady( int timeout ) const {
   pollfd request{ own_ >= 0 ? own_ : fd_, POLLOUT, 0 };
   return ::poll( &request, 1, timeout ) > 0;
}

size_t Descriptor::write( std::string_view bytes ) {
   // Up to PIPE_BUF bytes never block on a pipe that is ready for some.
   if ( kind_ == Kind::blocking && own_ < 0 && bytes.size() > PIPE_BUF ) {
      own_ = reopened();
   }
   ssize_t written = 0;
   if ( own_ >= 0 ) {
      written = ::write( own_, bytes.data(), bytes.size() );
   } else if ( kind_ == Kind::socket ) {
      written = ::send( fd_, bytes.data(), bytes.size(), MSG_DONTWAIT );
   } else if ( kind_ != Kind::blocking ) {
      written = ::write( fd_, bytes.data(), bytes.size() );
   } else if ( isReady( 0 ) ) {
      written = ::write( fd_, bytes.data(), std::min< size_t >( bytes.size(), PIPE_BUF ) );
   }
   if ( written < 0 ) {
      int const error = errno;
      if ( error != EINTR && error != EAGAIN && error != EWOULDBLOCK ) {
         throw std::system_error( error, std::generic_category(), "cannot write the output" );
      }
      return 0;
   }
   return static_cast< size_t >( written );
}

void Descriptor::await() {
   isReady( awaitTime );
}

void Descriptor::widen( [[maybe_unused]] size_t bytes ) {
#ifdef F_SETPIPE_SZ
   ::fcntl( fd_, F_SETPIPE_SZ, static_cast< int >( bytes ) );
#endif
}

void writeLastLine( int fd, std::string_view line ) noexcept {
   using Clock = std::chrono::steady_clock;
   auto const end = Clock::now() + std::chrono::milliseconds( 500 );
   try {
      Descriptor descriptor( fd );
      while ( !line.empty() && Clock::now() < end ) {
         size_t const taken = descriptor.write( line );
         line.remove_prefix( taken );
         if ( taken == 0 ) {
            descriptor.await();
         }
      }
   } catch ( std::exception const & ) {
      return;
   }
}

} // namespace wendo
