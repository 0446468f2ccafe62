#include "cli/Runner.h"

#include "cli/CheckCommand.h"
#include "cli/ClearCommand.h"
#include "cli/CommandWalk.h"
#include "cli/Errors.h"
#include "cli/Help.h"
#include "cli/Metrics.h"
#include "cli/RatesCommand.h"
#include "cli/Reply.h"
#include "cli/Schemas.h"
#include "cli/ShellCompletion.h"
#include "cli/ShowCommand.h"
#include "cli/StatusCommand.h"
#include "cli/Time.h"
#include "cli/TypesCommand.h"
#include "sources/file/StateWriter.h"

#include <chrono>
#include <new>
#include <system_error>

namespace tpcli {

namespace {

std::string helpFor( Command const & command, bool isLine ) {
   if ( command.arguments.empty() ) {
      return helpText();
   }
   CommandWalk walk( isLine );
   walk.take( joinArguments( command.arguments ) );
   return describe( walk.next(), "" );
}

void writeText( Session const & session, Command const & command, std::string_view text ) {
   writeReply( session, command, [&]( auto & renderer ) { renderer.write( text ); } );
}

void show( Session & session, Command const & command ) {
   if ( command.has( Option::rates ) ) {
      showRates( session, command );
   } else {
      showPolicies( session, command );
   }
}

void metrics( Session & session, Command const & command ) {
   using Seconds = std::chrono::duration< double >;
   auto const begin = std::chrono::steady_clock::now();
   session.workspace.readSource();
   MetricsOptions const options{ .openMetrics = session.options.openMetrics,
                                 .rules = session.options.metricsRules,
                                 .readSeconds =
                                    Seconds( std::chrono::steady_clock::now() - begin ).count(),
                                 .readTimestamp = currentTime() };
   writeReply( session, command, [&]( auto & renderer ) {
      writeMetrics( renderer, session.workspace.state(), options );
   } );
}

Status status( Session & session, Command const & command ) {
   session.workspace.readSource();
   State const & state = session.workspace.state();
   writeReply( session, command, [&]( auto & renderer ) { writeStatus( renderer, state ); } );
   return anyFailed( state ) ? Status::alarm : Status::done;
}

Status run( Session & session, CommandText const & text, bool isLine ) {
   Command const command = parseCommand( text, isLine );
   switch ( command.row->verb ) {
   case Verb::showCpu:
   case Verb::showInterface:
      show( session, command );
      break;
   case Verb::lastClear:
      session.workspace.read();
      writeReply( session, command,
                  [&]( auto & renderer ) { writeLastClear( renderer, session.workspace ); } );
      break;
   case Verb::clear:
      clearCounters( session, command );
      break;
   case Verb::check:
      return check( session, command );
   case Verb::status:
      return status( session, command );
   case Verb::snapshot:
      session.workspace.readSource();
      writeReply( session, command, [&]( auto & renderer ) {
         formatState( renderer.buffer(), session.workspace.state() );
      } );
      break;
   case Verb::schema:
      writeText( session, command, schemaText( command.argument() ) );
      break;
   case Verb::completion:
      writeText( session, command, completionScript( command.argument() ) );
      break;
   case Verb::complete:
      writeText( session, command, completeWords( command.arguments, session.workspace ) );
      break;
   case Verb::metrics:
      metrics( session, command );
      break;
   case Verb::types:
      writeReply( session, command,
                  [&]( auto & renderer ) { listTypes( renderer, command.argument() ); } );
      break;
   case Verb::help:
      writeText( session, command, helpFor( command, isLine ) );
      break;
   case Verb::leave:
      session.leaving = true;
      break;
   }
   return Status::done;
}

} // namespace

Status runCommand( Session & session, CommandText const & text, bool isLine ) {
   unsigned const interrupts = wendo::interrupt::served();
   Status status = Status::done;
   try {
      status = run( session, text, isLine );
   } catch ( wendo::SigIntException const & ) {
      return Status::interrupted;
   } catch ( UsageError const & error ) {
      session.report.usage( error );
      return Status::usage;
   } catch ( FileError const & error ) {
      session.report.error( error );
      return Status::failed;
   } catch ( std::system_error const & error ) {
      // Whoever closes the pipe has seen enough.
      if ( error.code() != std::errc::broken_pipe ) {
         session.report.error( error.what() );
      }
      return Status::failed;
   } catch ( std::bad_alloc const & ) {
      session.report.outOfMemory();
      return Status::failed;
   }
   return wendo::interrupt::served() == interrupts ? status : Status::interrupted;
}

} // namespace tpcli
