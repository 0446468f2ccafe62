#include "cli/Runner.h"

#include "TrafficPolicy/platform/vorn/Construct.h"
#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "cli/Errors.h"
#include "cli/TypesCommand.h"
#include "sources/Source.h"
#include "sources/file/CounterStore.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>
#include <vector>

namespace tpcli {

namespace {

constexpr unsigned formatText = 1;
constexpr unsigned formatJson = 2;
constexpr unsigned revision = 1;

void report( std::string const & problem ) {
   std::fprintf( stderr, "tpcli: %s\n", problem.c_str() );
}

// A show object of the command's side, made by its class's name: the command layer knows the
// library's classes as they describe themselves. Arguments in the order of the constructors.
Vorn::Ptr< TrafficPolicyCli::ShowTrafficPolicyBase > makeShow( Command const & command,
                                                               Workspace const & workspace ) {
   State const & state = workspace.state;
   std::vector< Vorn::Value > arguments{ state.config,   state.status,     workspace.counterStore,
                                         command.name,   command.summary,  command.errors,
                                         command.detail, command.counters, command.perInterface };
   std::string_view className;
   if ( command.verb == Verb::showCpu ) {
      className = "TrafficPolicyCli::ShowTrafficPolicyCpu";
      arguments.insert( arguments.end(),
                        { state.vrfConfig, state.allVrfConfig, state.l3IntfStatusDir } );
   } else {
      className = "TrafficPolicyCli::ShowTrafficPolicyInterface";
      arguments.insert( arguments.end(), { state.intfConfig, state.policyParamStatus } );
   }
   auto const show = Vorn::construct( className, arguments );
   return Vorn::Ptr( static_cast< TrafficPolicyCli::ShowTrafficPolicyBase * >( show.get() ) );
}

// Empty where no store is read and none can be written.
std::string counterStorePath( Options const & options, Source const & source ) {
   return options.counterStorePath.empty() ? source.defaultCounterStore()
                                           : options.counterStorePath;
}

void show( Options const & options, Command const & command, Workspace & workspace ) {
   auto const source = findSource( options.statePath );
   workspace.state = source->read().state;
   workspace.counterStore =
      readCounterStore( counterStorePath( options, *source ), *workspace.state.status );
   workspace.show = makeShow( command, workspace );
   unsigned const format = command.json || options.json ? formatJson : formatText;
   workspace.show->render( STDOUT_FILENO, format, revision );
}

// Written like every other reply, so that an error of the output is noticed in the same way.
void types( Options const & options, Command const & command ) {
   unsigned const format = command.json || options.json ? formatJson : formatText;
   wendo::WendoBuffer buffer( STDOUT_FILENO, wendo::WendoBuffer::viewCapacity, false );
   wendo::RendererV2 renderer( wendo::OutputFormat_t{ format }, buffer );
   listTypes( renderer, command.name );
   buffer.flush();
}

void clear( Options const & options, Workspace & workspace ) {
   auto const source = findSource( options.statePath );
   std::string const path = counterStorePath( options, *source );
   if ( path.empty() ) {
      throw UsageError( "a clear of a state from standard input needs --counter-store" );
   }
   State & state = workspace.state = source->read().state;
   CounterStoreLock const lock( path );
   auto & store = workspace.counterStore;
   store = readCounterStore( path, *state.status );
   TrafficPolicyCli::trafficPolicyCounterFactory( state.status, store )->clearCounter();
   writeCounterStore( path, *store );
}

void run( Options const & options, std::vector< std::string > const & words,
          Workspace & workspace ) {
   Command const command = parseCommand( words );
   switch ( command.verb ) {
   case Verb::showCpu:
   case Verb::showInterface:
      show( options, command, workspace );
      break;
   case Verb::clear:
      clear( options, workspace );
      break;
   case Verb::types:
      types( options, command );
      break;
   }
}

} // namespace

Status runCommand( Options const & options, std::vector< std::string > const & words,
                   Workspace & workspace ) {
   unsigned const interrupts = wendo::interrupt::served();
   try {
      run( options, words, workspace );
   } catch ( wendo::SigIntException const & ) {
      return Status::interrupted;
   } catch ( UsageError const & error ) {
      report( error.what() );
      std::fputs( usageText, stderr );
      return Status::usage;
   } catch ( FileError const & error ) {
      report( error.what() );
      return Status::failed;
   } catch ( std::system_error const & error ) {
      // Whoever closes the pipe has seen enough.
      if ( error.code() != std::errc::broken_pipe ) {
         report( error.what() );
      }
      return Status::failed;
   } catch ( std::bad_alloc const & ) {
      report( "out of memory" );
      return Status::failed;
   }
   return wendo::interrupt::served() == interrupts ? Status::done : Status::interrupted;
}

} // namespace tpcli
