#include "cli/CommandLine.h"

#include "cli/Errors.h"

#include <getopt.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <initializer_list>
#include <utility>

namespace tpcli {

char const usageText[] =
   "usage: tpcli [--state FILE] [--counter-store FILE] [--trace LEVELS] [--json] [COMMAND ...]\n"
   "       show traffic-policy {cpu | interface} [policy NAME] [summary] [detail] [errors]\n"
   "                           [counters] [per-interface] [| json]\n"
   "       clear traffic-policy counters\n"
   "       types [NAME]\n";

namespace {

std::string defaultStatePath() {
   char const * path = std::getenv( "TPCLI_STATE" );
   return path && *path ? path : "state.json";
}

void takeOption( Options & options, int option, char * const * argv, bool & storeGiven ) {
   switch ( option ) {
   case 's':
      options.statePath = optarg;
      break;
   case 'c':
      options.counterStorePath = optarg;
      storeGiven = true;
      break;
   case 't':
      options.traceLevels = parseTraceLevels( optarg );
      break;
   case 'j':
      options.json = true;
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
      throw UsageError( "unknown option " + std::string( argv[optind - 1] ) );
   }
}

} // namespace

Options parseArguments( int argc, char ** argv ) {
   static constexpr option known[] = { { "state", required_argument, nullptr, 's' },
                                       { "counter-store", required_argument, nullptr, 'c' },
                                       { "trace", required_argument, nullptr, 't' },
                                       { "json", no_argument, nullptr, 'j' },
                                       { "help", no_argument, nullptr, 'h' },
                                       { "version", no_argument, nullptr, 'v' },
                                       {} };
   Options options;
   options.statePath = defaultStatePath();
   bool storeGiven = false;
   int option = 0;
   // "-": words are taken in place, so that options may stand among them; "--" ends the options.
   while ( ( option = ::getopt_long( argc, argv, "-:h", known, nullptr ) ) != -1 ) {
      takeOption( options, option, argv, storeGiven );
   }
   options.command.insert( options.command.end(), argv + optind, argv + argc );
   if ( storeGiven && options.counterStorePath.empty() ) {
      throw UsageError( "--counter-store needs a file name" );
   }
   return options;
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

namespace {

using Words = std::vector< std::string >;

// Takes "| json" off the end, in one word or in two.
bool takeJsonFilter( Words & words ) {
   if ( words.size() >= 2 && words[words.size() - 2] == "|" && words.back() == "json" ) {
      words.resize( words.size() - 2 );
      return true;
   }
   if ( !words.empty() && ( words.back() == "| json" || words.back() == "|json" ) ) {
      words.pop_back();
      return true;
   }
   return false;
}

void setOnce( bool & flag, std::string const & word ) {
   if ( std::exchange( flag, true ) ) {
      throw UsageError( "\"" + word + "\" is given twice" );
   }
}

void parseShowOptions( Command & command, Words const & words, size_t at ) {
   struct {
      char const * word;
      bool & flag;
   } const flags[] = { { "summary", command.summary },
                       { "detail", command.detail },
                       { "errors", command.errors },
                       { "counters", command.counters },
                       { "per-interface", command.perInterface } };
   bool policyGiven = false;
   for ( ; at < words.size(); ++at ) {
      std::string const & word = words[at];
      if ( word == "policy" ) {
         setOnce( policyGiven, word );
         if ( ++at == words.size() || words[at].empty() ) {
            throw UsageError( "\"policy\" needs the name of a policy" );
         }
         command.name = words[at];
         continue;
      }
      bool known = false;
      for ( auto const & [name, flag] : flags ) {
         if ( word == name ) {
            setOnce( flag, word );
            known = true;
         }
      }
      if ( !known ) {
         throw UsageError( "unknown word \"" + word + "\"" );
      }
   }
   if ( command.errors && command.detail ) {
      throw UsageError( "\"errors\" and \"detail\" exclude each other" );
   }
}

bool beginsWith( Words const & words, std::initializer_list< char const * > wanted ) {
   return words.size() >= wanted.size()
          && std::equal( wanted.begin(), wanted.end(), words.begin() );
}

} // namespace

Command parseCommand( Words words ) {
   Command command;
   if ( beginsWith( words, { "show", "traffic-policy", "cpu" } )
        || beginsWith( words, { "show", "traffic-policy", "interface" } ) ) {
      command.verb = words[2] == "cpu" ? Verb::showCpu : Verb::showInterface;
      command.json = takeJsonFilter( words );
      parseShowOptions( command, words, 3 );
   } else if ( words == Words{ "clear", "traffic-policy", "counters" } ) {
      command.verb = Verb::clear;
   } else if ( beginsWith( words, { "types" } ) ) {
      command.verb = Verb::types;
      command.json = takeJsonFilter( words );
      if ( words.size() > 2 ) {
         throw UsageError( "\"types\" takes one name" );
      }
      command.name = words.size() == 2 ? words[1] : "";
   } else {
      std::string text;
      for ( std::string const & word : words ) {
         text += ( text.empty() ? "" : " " ) + word;
      }
      throw UsageError( "unknown command \"" + text + "\"" );
   }
   return command;
}

Words splitLine( std::string_view line ) {
   Words words;
   bool inWord = false;
   bool inQuotes = false;
   for ( size_t at = 0; at < line.size(); ++at ) {
      char c = line[at];
      bool const space = c == ' ' || c == '\t' || c == '\r';
      if ( space && !inQuotes ) {
         inWord = false;
         continue;
      }
      if ( !std::exchange( inWord, true ) ) {
         words.emplace_back();
      }
      if ( c == '"' ) {
         inQuotes = !inQuotes;
      } else {
         c = c == '\\' && at + 1 < line.size() ? line[++at] : c;
         words.back() += c;
      }
   }
   if ( inQuotes ) {
      throw UsageError( "a quote is not closed" );
   }
   return words;
}

} // namespace tpcli
