// tpcli: the traffic-policy show commands on a state file.

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "cli/CommandLine.h"
#include "cli/Errors.h"
#include "cli/Runner.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

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
   // Without SA_RESTART: a write or read that blocks must notice.
   action.sa_handler = []( int ) { wendo::interrupt::request(); };
   ::sigaction( SIGINT, &action, nullptr );
   // A closed pipe is an error of the write, with a status of its own.
   action.sa_handler = SIG_IGN;
   ::sigaction( SIGPIPE, &action, nullptr );
}

tpcli::Status run( int argc, char ** argv, tpcli::Workspace & workspace ) {
   try {
      tpcli::Options const options = tpcli::parseArguments( argc, argv );
      if ( options.help ) {
         std::fputs( tpcli::usageText, stdout );
         return tpcli::Status::done;
      }
      if ( options.version ) {
         std::puts( "tpcli " TPCLI_VERSION );
         return tpcli::Status::done;
      }
      TrafficPolicyCli::trace.levelMaskIs( options.traceLevels );
      if ( !options.command.empty() ) {
         return tpcli::runCommand( options, options.command, workspace );
      }
      if ( options.statePath == "-" ) {
         throw tpcli::UsageError( "standard input cannot hold both the state and the commands" );
      }
      return tpcli::runLines( options, workspace );
   } catch ( tpcli::UsageError const & error ) {
      std::fprintf( stderr, "tpcli: %s\n%s", error.what(), tpcli::usageText );
      return tpcli::Status::usage;
   }
}

} // namespace

int main( int argc, char ** argv ) {
   keepStandardDescriptors();
   catchSignals();
   tpcli::Workspace workspace;
   tpcli::Status status = run( argc, argv, workspace );
   if ( std::fflush( stdout ) != 0 && status == tpcli::Status::done ) {
      std::perror( "tpcli: cannot write the output" );
      status = tpcli::Status::failed;
   }
   // Nothing is left to be done, so nothing is walked to be taken down.
   std::_Exit( static_cast< int >( status ) );
}
