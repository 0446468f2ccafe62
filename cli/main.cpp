// tpcli: the traffic-policy show commands on any machine.

#include "cli/Runner.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

// A standard descriptor that the caller closed must not become that of a file opened later.
void keepStandardDescriptors() {
   for ( int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd ) {
      if ( ::fcntl( fd, F_GETFD ) < 0 && ::open( "/dev/null", O_RDONLY ) < 0 ) {
         std::_Exit( EXIT_FAILURE );
      }
   }
}

void catchSignals() {
   struct sigaction action {};
   // An interrupt that the caller ignores stays ignored, as in a job in the background.
   if ( ::sigaction( SIGINT, nullptr, &action ) == 0 && action.sa_handler != SIG_IGN ) {
      // Without SA_RESTART: a write or read that blocks must notice.
      action = {};
      action.sa_handler = []( int ) { wendo::interrupt::request(); };
      ::sigaction( SIGINT, &action, nullptr );
   }
   // A closed pipe is an error of the write, with a status of its own.
   action = {};
   action.sa_handler = SIG_IGN;
   ::sigaction( SIGPIPE, &action, nullptr );
}

tpcli::Status run( tpcli::Options & options, tpcli::Session & session ) {
   if ( options.version ) {
      std::puts( "tpcli " TPCLI_VERSION );
      return tpcli::Status::done;
   }
   TrafficPolicyCli::traceLevelMaskIs( options.traceLevels );
   if ( options.help ) {
      options.command = { "help" };
   }
   if ( !options.command.empty() ) {
      return tpcli::runCommand( session, tpcli::joinArguments( options.command ), false );
   }
   if ( options.statePath == "-" ) {
      throw tpcli::UsageError( "standard input cannot hold both the state and the commands" );
   }
   return tpcli::runLines( session );
}

// Ends the process. Nothing is left to be done then, so nothing is walked to be taken down.
[[noreturn]] void runAndExit( int argc, char ** argv, tpcli::Report const & report ) {
   tpcli::Options options;
   tpcli::Session session{ options, report, tpcli::Workspace( options ) };
   tpcli::Status status = tpcli::Status::failed;
   try {
      options = tpcli::parseArguments( argc, argv );
      status = run( options, session );
   } catch ( tpcli::UsageError const & error ) {
      session.report.usage( error );
      status = tpcli::Status::usage;
   } catch ( std::bad_alloc const & ) {
      session.report.outOfMemory();
   }
   if ( std::fflush( stdout ) != 0 && status == tpcli::Status::done ) {
      std::perror( "tpcli: cannot write the output" );
      status = tpcli::Status::failed;
   }
   std::_Exit( static_cast< int >( status ) );
}

} // namespace

int main( int argc, char ** argv ) {
   keepStandardDescriptors();
   catchSignals();
   tpcli::Report const report( tpcli::asksForJson( argc, argv ) );
   try {
      runAndExit( argc, argv, report );
   } catch ( std::bad_alloc const & ) {
      // There was not even memory to begin, or to tell what went wrong.
      report.outOfMemory();
      return static_cast< int >( tpcli::Status::failed );
   }
}
