#include "cli/Runner.h"

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "cli/CommandWalk.h"
#include "cli/Errors.h"
#include "cli/Help.h"
#include "cli/Output.h"
#include "cli/TypesCommand.h"
#include "sources/file/CounterStore.h"

#include <unistd.h>

#include <functional>
#include <new>
#include <system_error>

namespace tpcli {

namespace {

constexpr unsigned formatText = 1;
constexpr unsigned formatJson = 2;
constexpr unsigned revision = 1;

using ShowPtr = Vorn::Ptr< TrafficPolicyCli::ShowTrafficPolicyBase >;

ShowPtr makeShow( Command const & command, Workspace const & workspace ) {
   State const & state = workspace.state();
   Vorn::Ptr< TrafficPolicy::Counter const > const counters = workspace.counterStore();
   auto const flag = [&]( Option option ) { return command.has( option ); };
   Vorn::String const policy( command.value( Option::policy ) );
   if ( command.row->verb == Verb::showCpu ) {
      return TrafficPolicyCli::showTrafficPolicyCpuFactory(
         state.config, state.status, counters, policy, flag( Option::summary ),
         flag( Option::errors ), flag( Option::detail ), flag( Option::counters ),
         flag( Option::perInterface ), state.vrfConfig, state.allVrfConfig, state.l3IntfStatusDir );
   }
   return TrafficPolicyCli::showTrafficPolicyInterfaceFactory(
      state.config, state.status, counters, policy, flag( Option::summary ), flag( Option::errors ),
      flag( Option::detail ), flag( Option::counters ), flag( Option::perInterface ),
      state.intfConfig, state.policyParamStatus );
}

unsigned formatOf( Session const & session, Command const & command ) {
   return command.json || session.options.json ? formatJson : formatText;
}

OutputPath outputPath( Session const & session, Command const & command ) {
   if ( !command.filters.empty() && formatOf( session, command ) == formatJson ) {
      throw UsageError( "filters of lines take text, not JSON" );
   }
   return { .filters = command.filters, .pager = session.options.pager };
}

void show( Session & session, Command const & command ) {
   OutputPath const path = outputPath( session, command );
   Workspace & workspace = session.workspace;
   workspace.read();
   workspace.show = makeShow( command, workspace );
   writeOutput( path, [&]( int fd ) {
      workspace.show->render( static_cast< unsigned >( fd ), formatOf( session, command ),
                              revision );
   } );
}

// Written like every other reply, so that an error of the output is noticed in the same way.
void writeReply( Session const & session, Command const & command,
                 std::function< void( wendo::RendererV2 & ) > const & write ) {
   writeOutput( outputPath( session, command ), [&]( int fd ) {
      wendo::WendoBuffer buffer( fd, wendo::WendoBuffer::viewCapacity, false );
      wendo::RendererV2 renderer( wendo::OutputFormat_t{ formatOf( session, command ) }, buffer );
      write( renderer );
      buffer.flush();
   } );
}

std::string helpFor( Command const & command, bool isLine ) {
   if ( command.arguments.empty() ) {
      return helpText();
   }
   CommandWalk walk( isLine );
   walk.take( joinArguments( command.arguments ) );
   return describe( walk.next(), "" );
}

void clear( Workspace & workspace ) {
   std::string const path = workspace.counterStorePath();
   if ( path.empty() ) {
      throw UsageError( "a clear of a state from standard input needs --counter-store" );
   }
   workspace.readSource();
   CounterStoreLock const lock( path );
   auto const & status = workspace.state().status;
   auto const store = readCounterStore( path, *status );
   TrafficPolicyCli::trafficPolicyCounterFactory( status, store )->clearCounter();
   writeCounterStore( path, *store );
}

void run( Session & session, CommandText const & text, bool isLine ) {
   Command const command = parseCommand( text, isLine );
   switch ( command.row->verb ) {
   case Verb::showCpu:
   case Verb::showInterface:
      show( session, command );
      break;
   case Verb::clear:
      clear( session.workspace );
      break;
   case Verb::types:
      writeReply( session, command,
                  [&]( auto & renderer ) { listTypes( renderer, command.argument() ); } );
      break;
   case Verb::help:
      writeReply( session, command, [&]( auto & renderer ) {
         renderer.write( std::string_view( helpFor( command, isLine ) ) );
      } );
      break;
   case Verb::leave:
      session.leaving = true;
      break;
   }
}

} // namespace

Status runCommand( Session & session, CommandText const & text, bool isLine ) {
   unsigned const interrupts = wendo::interrupt::served();
   try {
      run( session, text, isLine );
   } catch ( wendo::SigIntException const & ) {
      return Status::interrupted;
   } catch ( UsageError const & error ) {
      session.report.usage( error );
      return Status::usage;
   } catch ( FileError const & error ) {
      session.report.error( error.what() );
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
   return wendo::interrupt::served() == interrupts ? Status::done : Status::interrupted;
}

} // namespace tpcli
