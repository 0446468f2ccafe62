#include "cli/RatesCommand.h"

#include "cli/Errors.h"
#include "cli/Rates.h"
#include "cli/Reply.h"
#include "cli/ShowCommand.h"
#include "cli/Time.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string>

namespace tpcli {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double defaultInterval = 1;

// The columns of the terminal that the reply goes to; 0: none.
size_t terminalWidth() {
   winsize size{};
   return ::isatty( STDOUT_FILENO ) != 0 && ::ioctl( STDOUT_FILENO, TIOCGWINSZ, &size ) == 0
             ? size.ws_col
             : 0;
}

std::string perSecond( std::optional< double > rate ) {
   std::array< char, 400 > text{ "-" };
   if ( rate ) {
      std::snprintf( text.data(), text.size(), "%.1f", *rate );
   }
   return text.data();
}

std::string padded( std::string const & text, size_t width ) {
   return std::string( width - std::min( width, text.size() ), ' ' ) + text;
}

void writeText( wendo::RendererV2 & renderer, PolicyRates const & policy, size_t width ) {
   constexpr size_t nameWidth = 32;
   constexpr size_t numberWidth = 14;
   constexpr size_t barBegins = 3 + nameWidth + 2 * ( numberWidth + 1 ) + 18;
   constexpr size_t barMin = 8;
   renderer.write( "Traffic policy ", policy.name, '\n' );
   double const busiest = policy.rates.empty() ? 0 : policy.rates.front().packets.value_or( 0 );
   for ( Rate const & rate : policy.rates ) {
      std::string line = "   ";
      line.append( rate.isRule ? "match rule: " : "" ).append( rate.name.view() ) += ':';
      line.append( 3 + nameWidth - std::min( 3 + nameWidth, line.size() ), ' ' );
      line += ' ' + padded( perSecond( rate.packets ), numberWidth ) + " packets/s "
              + padded( perSecond( rate.bits ), numberWidth ) + " bits/s";
      if ( width >= barBegins + barMin && line.size() <= barBegins && busiest > 0 ) {
         double const share = rate.packets.value_or( 0 ) / busiest;
         line.append( 1, ' ' ).append(
            static_cast< size_t >( share * static_cast< double >( width - barBegins - 2 ) ), '#' );
      }
      renderer.write( std::string_view( line ), '\n' );
   }
}

void addRate( wendo::RendererV2 & renderer, wendo::JsonKey const & key,
              std::optional< double > rate ) {
   if ( rate ) {
      renderer._addJsonKeyValuePair( key, *rate );
   } else {
      renderer._addJsonKeyValuePair( key, nullptr );
   }
}

void writeJson( wendo::RendererV2 & renderer, PolicyRates const & policy ) {
   static constexpr wendo::JsonKey rules( "rules" );
   static constexpr wendo::JsonKey namedCounters( "namedCounters" );
   static constexpr wendo::JsonKey packetsPerSecond( "packetsPerSecond" );
   static constexpr wendo::JsonKey bitsPerSecond( "bitsPerSecond" );
   auto const object = renderer.object( policy.name );
   for ( bool const ofRules : { true, false } ) {
      auto const members = renderer.object( ofRules ? rules : namedCounters );
      for ( Rate const & rate : policy.rates ) {
         if ( rate.isRule == ofRules ) {
            auto const one = renderer.object( rate.name );
            addRate( renderer, packetsPerSecond, rate.packets );
            addRate( renderer, bitsPerSecond, rate.bits );
         }
      }
   }
}

} // namespace

void showRates( Session & session, Command const & command ) {
   if ( session.options.statePath == "-" ) {
      throw UsageError( "rates need a source that can be read twice, not standard input" );
   }
   outputPath( session, command ); // refuses what it must before the wait
   Workspace & workspace = session.workspace;
   workspace.readSource();
   auto const begin = Clock::now();
   State const before = workspace.state();
   waitFor( parseSeconds( command.value( Option::interval ) ).value_or( defaultInterval ) );
   workspace.readSource();
   double const seconds = std::chrono::duration< double >( Clock::now() - begin ).count();
   auto const rates =
      ratesOf( before, workspace.state(), seconds, command.value( Option::policy ) );
   size_t const width = command.filters.empty() ? terminalWidth() : 0;
   writeReply( session, command, [&]( wendo::RendererV2 & renderer ) {
      static constexpr wendo::JsonKey secondsKey( "seconds" );
      static constexpr wendo::JsonKey policiesKey( "trafficPolicies" );
      renderer.startJsonRoot();
      renderer.addJsonKeyValuePair( secondsKey, seconds );
      {
         auto const policies = renderer.object( policiesKey );
         for ( PolicyRates const & policy : rates ) {
            if ( renderer.isText() ) {
               writeText( renderer, policy, width );
            } else {
               writeJson( renderer, policy );
            }
         }
      }
      renderer.endJsonRoot();
   } );
   hintAtUnknownNames( session, command );
}

} // namespace tpcli
