// Commands from standard input.

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "cli/Errors.h"
#include "cli/LineInput.h"
#include "cli/Runner.h"

#include <unistd.h>

#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace tpcli {

namespace {

Status runEach( Session & session, LineInput & lines, bool terminal ) {
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
   std::unique_ptr< LineInput > lines;
   try {
      lines = terminal ? editedLines( session.workspace ) : nullptr;
      lines = lines ? std::move( lines ) : plainLines( terminal );
      return runEach( session, *lines, terminal );
   } catch ( FileError const & error ) {
      session.report.inputLineIs( 0 );
      session.report.error( error );
   } catch ( std::bad_alloc const & ) {
      session.report.outOfMemory();
   }
   return Status::failed;
}

} // namespace tpcli
