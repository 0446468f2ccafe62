// Commands from standard input.

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "cli/Errors.h"
#include "cli/Runner.h"

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
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

   // Nothing at the end, or when the user interrupts the wait. Throws FileError.
   std::optional< std::string > next() {
      if ( prompt_ ) {
         std::fputs( "tpcli> ", stdout );
         std::fflush( stdout );
      }
      errno = 0;
      ssize_t const length = ::getline( &line_, &room_, stdin );
      if ( length < 0 ) {
         if ( errno == ENOMEM ) {
            throw std::bad_alloc();
         }
         if ( std::feof( stdin ) == 0 && !wendo::interrupt::requested ) {
            throw FileError( std::string( "standard input: " ) + std::strerror( errno ) );
         }
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

Status runEach( Session & session, Lines & lines, bool terminal ) {
   Status result = Status::done;
   for ( size_t number = 1;; ++number ) {
      std::optional< std::string > line = lines.next();
      if ( !line ) {
         return wendo::interrupt::requested ? Status::interrupted : result;
      }
      session.report.inputLineIs( terminal ? 0 : number );
      CommandText const text = splitLine( std::move( *line ) );
      if ( text.words.empty() ) {
         continue;
      }
      Status const status = runCommand( session, text, true );
      if ( session.leaving ) {
         return result;
      }
      result = status == Status::done ? result : status;
      // At a terminal an interrupt ends the command, elsewhere the program.
      if ( ( status == Status::interrupted && !terminal )
           || ( status != Status::done && session.options.failFast ) ) {
         return status;
      }
   }
}

} // namespace

Status runLines( Session & session ) {
   bool const terminal = ::isatty( STDIN_FILENO ) != 0 && ::isatty( STDOUT_FILENO ) != 0;
   Lines lines( terminal );
   try {
      return runEach( session, lines, terminal );
   } catch ( FileError const & error ) {
      session.report.inputLineIs( 0 );
      session.report.error( error.what() );
   } catch ( std::bad_alloc const & ) {
      session.report.outOfMemory();
   }
   return Status::failed;
}

} // namespace tpcli
