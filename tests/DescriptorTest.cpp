// The buffer over a file descriptor that takes its time, fails, or is interrupted.

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "TrafficPolicy/platform/wendo/WendoBuffer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace {

using wendo::WendoBuffer;

// A pipe, with a reader beside it once it is asked for.
class Pipe {
public:
   explicit Pipe( int flags = 0 ) { EXPECT_EQ( ::pipe2( ends_, flags ), 0 ); }
   ~Pipe() {
      read();
      closeReader();
   }
   int writer() const { return ends_[1]; }
   void closeReader() {
      if ( ends_[0] >= 0 ) {
         ::close( std::exchange( ends_[0], -1 ) );
      }
   }
   // Reads in small pieces, slowly.
   void startReading() {
      thread_ = std::thread( [this] {
         char piece[5000];
         ssize_t got = 0;
         while ( ( got = ::read( ends_[0], piece, sizeof piece ) ) != 0 ) {
            if ( got > 0 ) {
               text_.append( piece, static_cast< size_t >( got ) );
            } else if ( errno == EAGAIN ) {
               std::this_thread::yield();
            }
            std::this_thread::sleep_for( std::chrono::microseconds( 100 ) );
         }
      } );
   }
   // Everything that came, once the writing end is closed.
   std::string read() {
      if ( ends_[1] >= 0 ) {
         ::close( std::exchange( ends_[1], -1 ) );
      }
      if ( ends_[0] >= 0 && !thread_.joinable() ) {
         startReading();
      }
      if ( thread_.joinable() ) {
         thread_.join();
      }
      return text_;
   }

private:
   int ends_[2];
   std::thread thread_;
   std::string text_;
};

std::string numbered( size_t size ) {
   std::string text;
   while ( text.size() < size ) {
      text += std::to_string( text.size() ) + '\n';
   }
   return text;
}

// While this lives, a signal comes every few milliseconds, first after the delay.
class Alarm {
public:
   Alarm( void ( *handler )( int ), int delay, int interval ) {
      struct sigaction action {};
      action.sa_handler = handler;
      ::sigaction( SIGALRM, &action, &before_ );
      itimerval const timer{ { 0, interval * 1000 }, { 0, delay * 1000 } };
      ::setitimer( ITIMER_REAL, &timer, nullptr );
   }
   ~Alarm() {
      itimerval const none{};
      ::setitimer( ITIMER_REAL, &none, nullptr );
      ::sigaction( SIGALRM, &before_, nullptr );
   }

private:
   struct sigaction before_ {};
};

TEST( WendoBuffer, ContinuesWhatADescriptorDoesNotTakeAtOnce ) {
   std::string const text = numbered( 500'000 );
   for ( int const flags : { 0, O_NONBLOCK } ) {
      Pipe pipe( flags );
      pipe.startReading();
      {
         Alarm const alarm( []( int ) {}, 1, 1 );
         WendoBuffer buffer( pipe.writer(), 300'000, true );
         buffer.append( text );
         buffer.flush();
         buffer.append( "end" );
      }
      EXPECT_EQ( pipe.read(), text + "end" );
   }
   Pipe pipe;
   { WendoBuffer( pipe.writer(), 100, false ).append( "never flushed" ); }
   EXPECT_EQ( pipe.read(), "" );
}

TEST( WendoBuffer, ReportsAnErrorOnce ) {
   ::signal( SIGPIPE, SIG_IGN );
   Pipe pipe;
   pipe.closeReader();
   int const full = ::open( "/dev/full", O_WRONLY );
   for ( auto const & [fd, error] : { std::pair( full, ENOSPC ), std::pair( pipe.writer(), EPIPE ),
                                      std::pair( -1, EBADF ) } ) {
      WendoBuffer buffer( fd, 100, true );
      buffer.append( "text" );
      try {
         buffer.flush();
         ADD_FAILURE() << "written to " << fd;
      } catch ( std::system_error const & failure ) {
         EXPECT_EQ( failure.code().value(), error );
      }
      buffer.append( std::string( 300, 'x' ) );
      buffer.flush();
   }
   // The destructor has nobody to report to.
   WendoBuffer( full, 100, true ).append( "text" );
   ::close( full );
}

TEST( WendoBuffer, InterruptLosesNothing ) {
   Pipe pipe;
   unsigned const served = wendo::interrupt::served();
   {
      WendoBuffer buffer( pipe.writer(), 100, true );
      buffer.append( "written " );
      buffer.flush();
      buffer.append( "committed" );
      wendo::interrupt::request();
      EXPECT_THROW( buffer.flush(), wendo::SigIntException );
   }
   EXPECT_EQ( wendo::interrupt::served(), served + 1 );
   EXPECT_EQ( pipe.read(), "written committed" );
}

// One interrupt ends a command whose reader has stalled: what the pipe takes at once is handed
// over, an exact prefix of the output, and nothing waits for the reader again.
TEST( WendoBuffer, InterruptEndsAWait ) {
   std::string const text = numbered( 2'000'000 );
   for ( int const flags : { 0, O_NONBLOCK } ) {
      Pipe pipe( flags );
      {
         Alarm const alarm( []( int ) { wendo::interrupt::request(); }, 20, 0 );
         WendoBuffer buffer( pipe.writer(), 300'000, true );
         EXPECT_THROW( buffer.append( text ), wendo::SigIntException );
      }
      EXPECT_EQ( ::fcntl( pipe.writer(), F_GETFL ) & O_NONBLOCK, flags );
      std::string const taken = pipe.read();
      EXPECT_GE( taken.size(), 65'536u );
      EXPECT_LT( taken.size(), text.size() );
      EXPECT_TRUE( text.starts_with( taken ) );
   }
   EXPECT_FALSE( wendo::interrupt::requested );
}

// An interrupt without a signal, as one that comes just before the write: nothing blocks on it.
TEST( WendoBuffer, InterruptIsNotLostBeforeAWrite ) {
   Pipe pipe;
   WendoBuffer buffer( pipe.writer(), 300'000, true );
   std::thread interrupter( [] {
      std::this_thread::sleep_for( std::chrono::milliseconds( 20 ) );
      wendo::interrupt::request();
   } );
   EXPECT_THROW( buffer.append( numbered( 2'000'000 ) ), wendo::SigIntException );
   interrupter.join();
}

} // namespace
