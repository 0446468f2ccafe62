#include "cli/Child.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <new>
#include <system_error>

namespace tpcli {

namespace {

[[noreturn]] void run( Child::Body const & body, int input ) noexcept {
   std::signal( SIGINT, SIG_IGN );
   int status = ENOMEM;
   try {
      status = body( input );
   } catch ( std::bad_alloc const & ) {
      status = ENOMEM;
   }
   ::_exit( status );
}

// Both ends, the one to read first.
std::array< int, 2 > makePipe() {
   std::array< int, 2 > ends{};
   if ( ::pipe2( ends.data(), O_CLOEXEC ) < 0 ) {
      throw std::system_error( errno, std::generic_category(), "cannot make a pipe" );
   }
   return ends;
}

} // namespace

Child::Child( Body const & body ) {
   // What stdio holds would be written twice otherwise.
   std::fflush( stdout );
   auto const [input, output] = makePipe();
   auto const [alive, held] = makePipe();
   fd_ = output;
   alive_ = alive;
   process_ = ::fork();
   if ( process_ == 0 ) {
      ::close( output );
      run( body, input );
   }
   int const error = errno;
   ::close( input );
   ::close( held );
   if ( process_ < 0 ) {
      ::close( output );
      ::close( alive );
      throw std::system_error( error, std::generic_category(), "cannot start a process" );
   }
}

Child::~Child() {
   if ( process_ > 0 ) {
      ::kill( process_, SIGKILL );
      wait();
   }
   ::close( alive_ );
}

void Child::closeInput() {
   if ( fd_ >= 0 ) {
      ::close( fd_ );
      fd_ = -1;
   }
}

int Child::wait() {
   closeInput();
   int status = 0;
   while ( ::waitpid( process_, &status, 0 ) < 0 && errno == EINTR ) {
   }
   process_ = -1;
   return WIFEXITED( status ) ? WEXITSTATUS( status ) : EIO;
}

int Child::waitInterruptibly() {
   closeInput();
   pollfd end{ .fd = alive_, .events = 0, .revents = 0 };
   do {
      // A signal just before the wait does not end it.
      wendo::interrupt::check();
   } while ( ::poll( &end, 1, 100 ) <= 0 );
   return wait();
}

} // namespace tpcli
