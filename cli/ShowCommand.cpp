#include "cli/ShowCommand.h"

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "cli/BoundShow.h"
#include "cli/Nearest.h"
#include "cli/RecordFilter.h"
#include "cli/Reply.h"
#include "cli/StateNames.h"
#include "cli/Time.h"

#include <unistd.h>

#include <algorithm>

namespace tpcli {

namespace {

constexpr unsigned revision = 1;

void showOnce( Session & session, Command const & command, OutputPath const & path ) {
   Workspace & workspace = session.workspace;
   bool const raw = command.has( Option::raw );
   if ( raw ) {
      workspace.readSource();
   } else {
      workspace.read();
   }
   Vorn::Ptr< TrafficPolicy::Counter const > const store =
      raw ? Vorn::create< TrafficPolicy::Counter >() : workspace.counterStore();
   workspace.show = makeShow( command, filtered( workspace.state(), store, command ), store );
   writeOutput( path, [&]( int fd ) {
      workspace.show->render( static_cast< unsigned >( fd ),
                              static_cast< unsigned >( formatOf( session, command ) ), revision );
   } );
}

void writeLine( std::string const & text ) {
   wendo::WendoBuffer buffer( STDOUT_FILENO, text.size() + 1, false );
   buffer.append( text );
   buffer.append( "\n" );
   buffer.flush();
}

// In text a line with the time stands before each reply, in JSON each is a line with it.
void showRepeatedly( Session & session, Command const & command, OutputPath path ) {
   double const interval = *parseSeconds( command.value( Option::interval ) );
   unsigned const times = parseCount( command.value( Option::count ) ).value_or( 0 );
   unsigned const interrupts = wendo::interrupt::served();
   if ( session.options.statePath == "-" ) {
      throw UsageError( "interval needs a source that can be read again, not standard input" );
   }
   path.pager.clear();
   for ( unsigned done = 0; times == 0 || done < times; ++done ) {
      if ( done > 0 ) {
         waitFor( interval );
      }
      double const now = currentTime();
      if ( formatOf( session, command ) == wendo::OutputFormat_t::JSON ) {
         path.head = R"({"time":)" + numberText( now ) + R"(,"reply":)";
         path.tail = "}\n";
      } else {
         writeLine( utcText( now ) );
      }
      showOnce( session, command, path );
      if ( wendo::interrupt::served() != interrupts ) {
         return;
      }
   }
}

// What the source says and the reply does not have: some of it, check tells all.
void reportNotes( Session const & session ) {
   constexpr size_t notesMax = 10;
   auto const & notes = session.workspace.notes();
   for ( size_t at = 0; at < std::min( notes.size(), notesMax ); ++at ) {
      session.report.hint( notes[at] );
   }
   if ( notes.size() > notesMax ) {
      session.report.hint( "and " + std::to_string( notes.size() - notesMax )
                           + " more, which check tells" );
   }
}

} // namespace

Vorn::Ptr< TrafficPolicyCli::ShowTrafficPolicyBase >
makeShow( Command const & command, State const & state,
          Vorn::Ptr< TrafficPolicy::Counter const > const & counters ) {
   auto const flag = [&]( Option option ) { return command.has( option ); };
   Vorn::String const policy( command.value( Option::policy ) );
   if ( command.row->verb == Verb::showCpu ) {
      return Vorn::create< BoundShowCpu >(
         state.furtherVrfPolicies, state.config, state.status, counters, policy,
         flag( Option::summary ), flag( Option::errors ), flag( Option::detail ),
         flag( Option::counters ), flag( Option::perInterface ), state.vrfConfig,
         state.allVrfConfig, state.l3IntfStatusDir );
   }
   return Vorn::create< BoundShowInterface >(
      state.furtherIntfPolicies, state.config, state.status, counters, policy,
      flag( Option::summary ), flag( Option::errors ), flag( Option::detail ),
      flag( Option::counters ), flag( Option::perInterface ), state.intfConfig,
      state.policyParamStatus );
}

void hintAtUnknownNames( Session const & session, Command const & command ) {
   State const & state = session.workspace.state();
   for ( OptionRow const & row : optionRows() ) {
      std::string const & name = command.value( row.option );
      if ( name.empty() || !argumentRow( row.argument ).isName
           || hasName( state, row.argument, name ) ) {
         continue;
      }
      Nearest nearest( name );
      forEachName( state, row.argument, "",
                   [&]( std::string_view candidate ) { nearest.offer( candidate ); } );
      session.report.hint( "there is no " + std::string( row.word ) + " \"" + name + '"'
                           + nearest.suggestion() );
   }
}

void showPolicies( Session & session, Command const & command ) {
   OutputPath const path = outputPath( session, command );
   unsigned const interrupts = wendo::interrupt::served();
   if ( command.has( Option::interval ) ) {
      showRepeatedly( session, command, path );
   } else {
      showOnce( session, command, path );
   }
   if ( wendo::interrupt::served() == interrupts ) {
      reportNotes( session );
      hintAtUnknownNames( session, command );
   }
}

} // namespace tpcli
