#include "cli/Output.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "cli/Child.h"
#include "cli/LineFilters.h"
#include "sources/FileDescriptor.h"
#include "sources/SystemCall.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace tpcli {

namespace {

constexpr size_t readSize = 1 << 16;

// Returns an error number.
int writeAll( std::string_view text ) {
   while ( !text.empty() ) {
      ssize_t const written =
         retried( [&] { return ::write( STDOUT_FILENO, text.data(), text.size() ); } );
      if ( written < 0 ) {
         return errno;
      }
      text.remove_prefix( static_cast< size_t >( written ) );
   }
   return 0;
}

// Calls for each piece of the input, and for an empty one at the end. Returns an error number.
int copyThrough( int input,
                 std::function< void( std::string_view, std::string & ) > const & pass ) {
   auto const buffer = std::make_unique_for_overwrite< char[] >( readSize );
   std::string passed;
   for ( ;; ) {
      ssize_t const got = retried( [&] { return ::read( input, buffer.get(), readSize ); } );
      if ( got < 0 ) {
         return errno;
      }
      pass( { buffer.get(), static_cast< size_t >( got ) }, passed );
      if ( int const error = writeAll( passed ); error != 0 || got == 0 ) {
         return error;
      }
      passed.clear();
   }
}

// The processes behind the show: from their input to standard output.

int filterLines( std::vector< LineFilter > const & wanted, int input ) {
   LineFilters filters( wanted );
   return copyThrough( input, [&]( std::string_view text, std::string & passed ) {
      if ( text.empty() ) {
         filters.end( passed );
      } else {
         filters.take( text, passed );
      }
   } );
}

int wrap( std::string head, std::string const & tail, int input ) {
   bool lineBreak = false; // held back: it may be the last
   return copyThrough( input, [&]( std::string_view text, std::string & passed ) {
      passed = std::exchange( head, "" );
      if ( text.empty() ) {
         passed += tail;
         return;
      }
      passed.append( lineBreak ? "\n" : "" ).append( text );
      lineBreak = text.ends_with( '\n' );
      passed.resize( passed.size() - ( lineBreak ? 1 : 0 ) );
   } );
}

// While it lives, what is written to standard output goes elsewhere.
class Redirection {
public:
   // Of a descriptor that was just opened, or failed to be.
   explicit Redirection( int fd )
      : saved_( fd < 0 ? -1 : ::dup( STDOUT_FILENO ) ) {
      if ( saved_ < 0 || ::dup2( fd, STDOUT_FILENO ) < 0 ) {
         throw std::system_error( errno, std::generic_category(), "cannot redirect the output" );
      }
   }
   ~Redirection() {
      std::fflush( stdout );
      ::dup2( saved_, STDOUT_FILENO );
      ::close( saved_ );
   }
   Redirection( Redirection const & ) = delete;
   Redirection & operator=( Redirection const & ) = delete;

private:
   int saved_;
};

// A pager on standard output: while it lives, what is written there goes to it.
class PagedOutput {
public:
   explicit PagedOutput( std::string const & command )
      : child_( [&]( int input ) { return runPager( command, input ); } ) {
      redirection_.emplace( child_.fd() );
      child_.closeInput();
   }
   ~PagedOutput() { end(); }
   PagedOutput( PagedOutput const & ) = delete;
   PagedOutput & operator=( PagedOutput const & ) = delete;

   // Waits until the user leaves the pager. Throws std::system_error when there was none to leave.
   void finish() {
      constexpr int cannotRun = 126; // of a shell; the next one: there is no such command
      int const status = end();
      if ( status == cannotRun || status == cannotRun + 1 ) {
         throw std::system_error( ENOEXEC, std::generic_category(), "cannot run the pager" );
      }
   }

private:
   int end() {
      if ( !redirection_ ) {
         return 0;
      }
      redirection_.reset();
      int const status = child_.wait();
      // Interrupts of this time were the pager's.
      wendo::interrupt::requested = false;
      return status;
   }

   static int runPager( std::string const & command, int input ) {
      std::signal( SIGINT, SIG_DFL );
      std::signal( SIGPIPE, SIG_DFL );
      ::dup2( input, STDIN_FILENO );
      // A reply that fits the screen ends the usual pager at once.
      ::setenv( "LESS", "FRX", 0 );
      ::execl( "/bin/sh", "sh", "-c", command.c_str(), nullptr );
      return errno;
   }

   Child child_;
   std::optional< Redirection > redirection_;
};

// The last line of a reply that was interrupted, unless nobody takes it.
void writeInterrupted() {
   pollfd output{ .fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0 };
   if ( ::poll( &output, 1, 0 ) > 0 ) {
      writeAll( "exiting on interrupt\n" );
   }
}

void writeThrough( Child::Body const & body, std::function< void( int fd ) > const & reply ) {
   unsigned const interrupts = wendo::interrupt::served();
   std::optional< Child > child( std::in_place, body );
   try {
      // A show that is interrupted says so on standard output, where the filter still writes.
      FileDescriptor const nowhere(
         retried( [] { return ::open( "/dev/null", O_WRONLY | O_CLOEXEC ); } ) );
      Redirection const redirection( nowhere.get() );
      reply( child->fd() );
   } catch ( std::system_error const & error ) {
      // The filter tells why it takes no more.
      if ( error.code() != std::errc::broken_pipe ) {
         throw;
      }
   }
   if ( wendo::interrupt::served() != interrupts ) {
      child.reset();
      writeInterrupted();
   } else if ( int const error = child->waitInterruptibly(); error != 0 ) {
      throw std::system_error( error, std::generic_category(), "cannot write the output" );
   }
}

} // namespace

void writeOutput( OutputPath const & path, std::function< void( int fd ) > const & reply ) {
   std::optional< PagedOutput > pager;
   if ( !path.pager.empty() && ::isatty( STDOUT_FILENO ) != 0 ) {
      pager.emplace( path.pager );
   }
   try {
      if ( !path.tail.empty() ) {
         writeThrough( [&]( int input ) { return wrap( path.head, path.tail, input ); }, reply );
      } else if ( !path.filters.empty() ) {
         writeThrough( [&]( int input ) { return filterLines( path.filters, input ); }, reply );
      } else {
         reply( STDOUT_FILENO );
      }
   } catch ( std::system_error const & error ) {
      if ( !pager || error.code() != std::errc::broken_pipe ) {
         throw;
      }
   }
   if ( pager ) {
      pager->finish();
   }
}

} // namespace tpcli
