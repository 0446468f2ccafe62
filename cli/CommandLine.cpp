#include "cli/CommandLine.h"

#include "cli/CommandTable.h"
#include "cli/Errors.h"
#include "cli/Nearest.h"

#include <getopt.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace tpcli {

namespace {

std::string fromEnvironment( char const * name, char const * otherwise ) {
   char const * value = std::getenv( name );
   return value && *value ? value : otherwise;
}

// The value of an option that names a file.
std::string fileName( std::string_view option ) {
   if ( !*optarg ) {
      throw UsageError( "--" + std::string( option ) + " needs a file name" );
   }
   return optarg;
}

bool yesOrNo( std::string_view option ) {
   std::string_view const word = optarg;
   if ( word != "yes" && word != "no" ) {
      throw UsageError( "--" + std::string( option ) + " is yes or no" );
   }
   return word == "yes";
}

[[noreturn]] void refuseOption( std::string_view argument ) {
   std::string name( argument.substr( 0, argument.find( '=' ) ) );
   // Of letters in one argument, the argument before it may be told.
   bool const isLong = name.starts_with( "--" ) && ( optopt == 0 || name.size() < argument.size() );
   if ( isLong && optopt != 0 ) {
      throw UsageError( name + " takes no value" );
   }
   if ( !isLong ) {
      // Several letters may stand in one argument.
      name = { '-', static_cast< char >( optopt ) };
   }
   Nearest nearest( name );
   for ( ProgramOptionRow const & row : programOptionRows() ) {
      nearest.offer( "--" + std::string( row.name ) );
   }
   throw UsageError( "unknown option " + name + nearest.suggestion() );
}

void takeOption( Options & options, int option, char * const * argv ) {
   switch ( option ) {
   case 's':
      options.statePath = fileName( "state" );
      break;
   case 'c':
      options.counterStorePath = fileName( "counter-store" );
      break;
   case 't':
      options.traceLevels = parseTraceLevels( optarg );
      break;
   case 'p':
      options.pager = optarg;
      break;
   case 'j':
      options.json = true;
      break;
   case 'f':
      options.failFast = true;
      break;
   case 'o':
      options.openMetrics = true;
      break;
   case 'm':
      options.metricsRules = yesOrNo( "metrics-rules" );
      break;
   case 'h':
      options.help = true;
      break;
   case 'v':
      options.version = true;
      break;
   case 1:
      options.command.emplace_back( optarg );
      break; // a word of the command
   case ':':
      throw UsageError( std::string( argv[optind - 1] ) + " needs a value" );
   default:
      refuseOption( argv[optind - 1] );
   }
}

} // namespace

Options parseArguments( int argc, char ** argv ) {
   std::vector< option > known;
   for ( ProgramOptionRow const & row : programOptionRows() ) {
      known.push_back( { row.name.data(), row.placeholder.empty() ? no_argument : required_argument,
                         nullptr, row.letter } );
   }
   known.push_back( {} );
   Options options;
   options.statePath = fromEnvironment( "TPCLI_STATE", "state.json" );
   options.pager = fromEnvironment( "TPCLI_PAGER", "" );
   int option = 0;
   // "-": words are taken in place, so that options may stand among them; "--" ends the options.
   while ( ( option = ::getopt_long( argc, argv, "-:h", known.data(), nullptr ) ) != -1 ) {
      takeOption( options, option, argv );
   }
   options.command.insert( options.command.end(), argv + optind, argv + argc );
   return options;
}

bool asksForJson( int argc, char const * const * argv ) {
   for ( int at = 1; at < argc && std::string_view( argv[at] ) != "--"; ++at ) {
      if ( std::string_view( argv[at] ) == "--json" ) {
         return true;
      }
   }
   return false;
}

uint32_t parseTraceLevels( std::string_view text ) {
   constexpr unsigned levelMax = 31;
   uint32_t mask = 0;
   char const * at = text.data();
   char const * const end = at + text.size();
   auto const level = [&] {
      unsigned number = levelMax + 1;
      at = std::from_chars( at, end, number ).ptr;
      if ( number > levelMax ) {
         throw UsageError( "\"" + std::string( text )
                           + "\" names no trace levels (such as 8, 7,8 or 1-8)" );
      }
      return number;
   };
   for ( ;; ) {
      unsigned const low = level();
      unsigned const high = at != end && *at == '-' ? ( ++at, level() ) : low;
      for ( unsigned number = low; number <= high; ++number ) {
         mask |= 1u << number;
      }
      if ( at == end && low <= high ) {
         return mask;
      }
      if ( at == end || *at++ != ',' || low > high ) {
         at = end;
         level();
      }
   }
}

} // namespace tpcli
