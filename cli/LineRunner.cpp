// Commands from standard input.

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "cli/Errors.h"
#include "cli/Runner.h"

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace tpcli {

namespace {

// The lines of standard input.
class Lines {
public:
   explicit Lines( bool prompt )
      : prompt_( prompt ) {}
   ~Lines() { std::free( line_ ); }
   Lines( Lines const & ) = delete;
   Lines & operator=( Lines const & ) = delete;

   // Nothing at the end, or when the user interrupts the wait.
   std::optional< std::string > next() {
      if ( prompt_ ) {
         std::fputs( "tpcli> ", stdout );
         std::fflush( stdout );
      }
      ssize_t const length = ::getline( &line_, &room_, stdin );
      if ( length < 0 ) {
         if ( prompt_ ) {
            std::fputs( "\n", stdout );
         }
         return std::nullopt;
      }
      std::string text( line_, static_cast< size_t >( length ) );
      if ( text.ends_with( '\n' ) ) {
         text.pop_back();
      }
      return text;
   }

private:
   bool prompt_;
   char * line_ = nullptr;
   size_t room_ = 0;
};

// Reports a line that is no command itself.
Status runLine( Options const & options, std::string const & line, Workspace & workspace ) {
   std::vector< std::string > words;
   try {
      words = splitLine( line );
   } catch ( UsageError const & error ) {
      std::fprintf( stderr, "tpcli: %s\n", error.what() );
      return Status::usage;
   }
   return words.empty() ? Status::done : runCommand( options, words, workspace );
}

} // namespace

Status runLines( Options const & options, Workspace & workspace ) {
   bool const terminal = ::isatty( STDIN_FILENO ) != 0;
   Lines lines( terminal );
   Status result = Status::done;
   while ( auto const line = lines.next() ) {
      Status const status = runLine( options, *line, workspace );
      result = status == Status::done ? result : status;
      // At a terminal an interrupt ends the command, elsewhere the program.
      if ( status == Status::interrupted && !terminal ) {
         return status;
      }
   }
   return wendo::interrupt::requested ? Status::interrupted : result;
}

} // namespace tpcli
