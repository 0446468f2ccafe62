#include "cli/Runner.h"

#include "cli/CounterStore.h"
#include "cli/Errors.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>

namespace tpcli {

namespace {

constexpr unsigned formatText = 1;
constexpr unsigned formatJson = 2;
constexpr unsigned revision = 1;

void report( std::string const & problem ) {
   std::fprintf( stderr, "tpcli: %s\n", problem.c_str() );
}

void show( Options const & options, Command const & command, Workspace & workspace ) {
   State & state = workspace.state = readState( options.statePath );
   auto & store = workspace.counterStore;
   store = readCounterStore( options.counterStorePath, *state.status );
   if ( command.verb == Verb::showCpu ) {
      workspace.show = TrafficPolicyCli::showTrafficPolicyCpuFactory(
         state.config, state.status, store, std::string_view( command.name ), command.summary,
         command.errors, command.detail, command.counters, command.perInterface, state.vrfConfig,
         state.allVrfConfig, state.l3IntfStatusDir );
   } else {
      workspace.show = TrafficPolicyCli::showTrafficPolicyInterfaceFactory(
         state.config, state.status, store, std::string_view( command.name ), command.summary,
         command.errors, command.detail, command.counters, command.perInterface, state.intfConfig,
         state.policyParamStatus );
   }
   unsigned const format = command.json || options.json ? formatJson : formatText;
   workspace.show->render( STDOUT_FILENO, format, revision );
}

void clear( Options const & options, Workspace & workspace ) {
   if ( options.counterStorePath.empty() ) {
      throw UsageError( "a clear of a state from standard input needs --counter-store" );
   }
   State & state = workspace.state = readState( options.statePath );
   CounterStoreLock const lock( options.counterStorePath );
   auto & store = workspace.counterStore;
   store = readCounterStore( options.counterStorePath, *state.status );
   TrafficPolicyCli::trafficPolicyCounterFactory( state.status, store )->clearCounter();
   writeCounterStore( options.counterStorePath, *store );
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
