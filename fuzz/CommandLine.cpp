#include "cli/CommandLine.h"

#include "cli/CommandWalk.h"
#include "cli/Completion.h"
#include "cli/Errors.h"
#include "cli/LineFilters.h"
#include "cli/Printable.h"
#include "fuzz/Checks.h"
#include "fuzz/Targets.h"

#include <unistd.h>

#include <algorithm>
#include <optional>
#include <sstream>

namespace fuzz {

namespace {

// At least one.
std::vector< std::string > linesOf( std::string_view bytes ) {
   std::istringstream input{ std::string( bytes ) };
   std::vector< std::string > lines;
   for ( std::string line; std::getline( input, line ); ) {
      lines.push_back( line );
   }
   lines.resize( std::max( lines.size(), size_t{ 1 } ) );
   return lines;
}

void checkUsage( tpcli::UsageError const & error ) {
   std::string const & line = error.line();
   require( line.empty()
               || ( error.begin() <= error.end() && error.begin() <= line.size() + 1
                    && error.end() <= std::max( line.size(), error.begin() ) ),
            "a place that is not in the line: " + line );
   std::string const text = tpcli::printable( error.what() );
   require(
      std::ranges::none_of( text, []( char c ) { return c >= 0 && ( c < 0x20 || c == 0x7f ); } ),
      "a control character in a message" );
}

void checkCommand( tpcli::CommandText const & text, bool isLine ) {
   try {
      tpcli::Command const command = tpcli::parseCommand( text, isLine );
      require( command.row != nullptr, "a command of no kind" );
   } catch ( tpcli::UsageError const & error ) {
      checkUsage( error );
   }
   tpcli::Options options;
   options.statePath = "/dev/null";
   tpcli::Workspace workspace( options );
   auto const completions = tpcli::complete( text, isLine, workspace );
   for ( std::string const & word : completions.words ) {
      require( word.starts_with( completions.begin ), "not a completion: " + word );
      require( word.starts_with( completions.common ), "not common: " + completions.common );
   }
   tpcli::describe( completions );
}

// The arguments as a line, and that line as a command line, are the same words; but what may be a
// pipe stays as it is.
void checkWords( std::vector< std::string > const & arguments ) {
   if ( std::ranges::any_of( arguments,
                             []( auto const & one ) { return one.starts_with( '|' ); } ) ) {
      return;
   }
   auto const joined = tpcli::joinArguments( arguments );
   auto const split = tpcli::splitLine( joined.line );
   require( !split.openQuote
               && std::ranges::equal( joined.words, split.words, {}, &tpcli::Word::text,
                                      &tpcli::Word::text ),
            "the words of a line are not those it was made of: " + joined.line );
}

void checkArguments( std::vector< std::string > lines ) {
   std::vector< char * > arguments;
   std::string program = "tpcli";
   arguments.push_back( program.data() );
   for ( std::string & line : lines ) {
      arguments.push_back( line.data() );
   }
   arguments.push_back( nullptr );
   optind = 0; // getopt_long() begins anew
   try {
      auto const count = static_cast< int >( arguments.size() - 1 );
      tpcli::asksForJson( count, arguments.data() );
      auto const options = tpcli::parseArguments( count, arguments.data() );
      checkWords( options.command );
      checkCommand( tpcli::joinArguments( options.command ), false );
   } catch ( tpcli::UsageError const & error ) {
      checkUsage( error );
   }
}

} // namespace

void commandLine( std::string_view bytes ) {
   auto const lines = linesOf( bytes );
   checkCommand( tpcli::splitLine( lines.front() ), true );
   checkArguments( lines );
}

void lineFilters( std::string_view bytes ) {
   size_t const end = std::min( bytes.find( '\n' ), bytes.size() );
   std::string const line = "status " + std::string( bytes.substr( 0, end ) );
   std::vector< tpcli::LineFilter > wanted;
   try {
      wanted = tpcli::parseCommand( tpcli::splitLine( line ), true ).filters;
   } catch ( tpcli::UsageError const & ) {
      return;
   }
   bytes.remove_prefix( end );
   // Pieces of any size pass the same.
   std::optional< std::string > before;
   for ( size_t const size : { bytes.size() + 1, size_t{ 1 }, size_t{ 3 }, size_t{ 64 } } ) {
      tpcli::LineFilters filters( wanted );
      std::string passed;
      for ( size_t at = 0; at < bytes.size(); at += size ) {
         filters.take( bytes.substr( at, size ), passed );
      }
      filters.end( passed );
      require( !before || passed == *before, "other pieces pass otherwise" );
      before = passed;
   }
}

} // namespace fuzz
