// The words of the program and of a command.

#include "cli/CommandLine.h"

#include "cli/CommandTable.h"
#include "cli/Errors.h"
#include "cli/Words.h"
#include "tests/Support.h"

#include <getopt.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace {

using Words = std::vector< std::string >;

// All that the options say, in one line.
std::string parsed( Words words ) {
   words.insert( words.begin(), "tpcli" );
   std::vector< char * > arguments;
   for ( std::string & word : words ) {
      arguments.push_back( word.data() );
   }
   arguments.push_back( nullptr );
   ::optind = 0; // a new scan
   try {
      auto const options =
         tpcli::parseArguments( static_cast< int >( words.size() ), arguments.data() );
      std::ostringstream text;
      text << options.statePath << ' ' << options.counterStorePath << ' ' << options.traceLevels
           << ( options.json ? " json" : "" ) << ( options.help ? " help" : "" )
           << ( options.version ? " version" : "" );
      for ( std::string const & word : options.command ) {
         text << " [" << word << ']';
      }
      return text.str();
   } catch ( tpcli::UsageError const & error ) {
      return error.what();
   }
}

TEST( CommandLine, HasOptionsAmongTheWords ) {
   struct {
      Words words;
      char const * wanted;
   } const cases[] = {
      { {}, "state.json  0" },
      { { "show", "--json", "x" }, "state.json  0 json [show] [x]" },
      { { "--state", "a", "show", "--state=b" }, "b  0 [show]" },
      { { "--state", "-", "x" }, "-  0 [x]" },
      { { "--counter-store", "c", "--state", "-" }, "- c 0" },
      { { "x", "--", "--json", "-h" }, "state.json  0 [x] [--json] [-h]" },
      { { "-h" }, "state.json  0 help" },
      { { "--help", "--version" }, "state.json  0 help version" },
      { { "--trace", "0,2-4", "a b", "" }, "state.json  29 [a b] []" },
      { { "x", "|", "-" }, "state.json  0 [x] [|] [-]" },
      { { "--state" }, "--state needs a value" },
      { { "-xh" }, "unknown option -x" },
      { { "--jsno" }, "unknown option --jsno; did you mean --json?" },
      { { "--json=1" }, "--json takes no value" },
      { { "--state=" }, "--state needs a file name" },
      { { "--counter-store=" }, "--counter-store needs a file name" },
   };
   ::unsetenv( "TPCLI_STATE" );
   for ( auto const & [words, wanted] : cases ) {
      EXPECT_EQ( parsed( words ), wanted ) << testing::PrintToString( words );
   }
   ::setenv( "TPCLI_STATE", "other", 1 );
   EXPECT_EQ( parsed( {} ), "other  0" );
   EXPECT_EQ( parsed( { "--state", "a" } ), "a  0" );
   ::setenv( "TPCLI_STATE", "", 1 );
   EXPECT_EQ( parsed( {} ), "state.json  0" );
   ::unsetenv( "TPCLI_STATE" );
}

// The levels of numbers and pairs, or the error.
TEST( CommandLine, HasTraceLevels ) {
   struct {
      char const * text;
      uint32_t wanted; // 0: an error
   } const cases[] = { { "0", 1 },         { "31", 1u << 31 },  { "0-31", ~0u }, { "7,8", 0x180 },
                       { "3-3", 8 },       { "1-3,2-4", 0x1e }, { "32", 0 },     { "", 0 },
                       { "-1", 0 },        { "1-", 0 },         { "1,", 0 },     { ",1", 0 },
                       { "1,,2", 0 },      { "1-2-3", 0 },      { "4-3", 0 },    { "4-3,1", 0 },
                       { "1 ", 0 },        { "x", 0 },          { "1x", 0 },     { "0x1", 0 },
                       { "4294967297", 0 } };
   for ( auto const & [text, wanted] : cases ) {
      try {
         EXPECT_EQ( tpcli::parseTraceLevels( text ), wanted ) << text;
         EXPECT_NE( wanted, 0u ) << text;
      } catch ( tpcli::UsageError const & error ) {
         EXPECT_EQ( wanted, 0u ) << text;
         EXPECT_EQ( error.what(), '"' + std::string( text )
                                     + "\" names no trace levels (such as 8, 7,8 or 1-8)" );
      }
   }
}

Words texts( tpcli::CommandText const & text ) {
   Words words;
   for ( tpcli::Word const & word : text.words ) {
      words.push_back( word.text );
   }
   return words;
}

// Words come back from a line, in quotes and with backslashes where they are needed and where not,
// and so they do as the program itself quotes them.
TEST( CommandLine, SplitsALineIntoItsWords ) {
   test::Random random( 8 );
   for ( unsigned i = 0; i < 5000; ++i ) {
      Words words( random.below( 5 ) );
      std::string line( random.below( 2 ), '\t' );
      std::string quoted;
      for ( std::string & word : words ) {
         std::string written;
         bool inQuotes = false;
         for ( unsigned left = random.below( 8 ); left > 0; --left ) {
            if ( random.oneIn( 4 ) ) {
               inQuotes = !inQuotes;
               written += '"';
            }
            char const c = "ab \t\r\"\\|-'#!\0"[random.below( 13 )];
            bool const mustEscape =
               c == '"' || c == '\\'
               || ( std::string_view( " \t\r'" ).find( c ) != std::string_view::npos && !inQuotes )
               || ( ( c == '#' || c == '!' ) && written.empty() );
            written.append( mustEscape || random.oneIn( 6 ) ? "\\" : "" ) += c;
            word += c;
         }
         written += inQuotes ? "\"" : written.empty() ? "\"\"" : "";
         line += written + " \r\t"[random.below( 3 )] + std::string( random.below( 2 ), ' ' );
         quoted += tpcli::quotedWord( word ) + ' ';
      }
      ASSERT_EQ( texts( tpcli::splitLine( line ) ), words ) << line;
      ASSERT_EQ( texts( tpcli::splitLine( quoted + "# more" ) ), words ) << quoted;
   }
   EXPECT_EQ( texts( tpcli::splitLine( "a\\" ) ), Words{ "a\\" } );
   EXPECT_EQ( texts( tpcli::splitLine( "'a \\' 'b\"' ! c#" ) ),
              ( Words{ "a \\", "b\"", "!", "c#" } ) );
   EXPECT_EQ( texts( tpcli::splitLine( " ! x" ) ), Words{} );
   for ( char const * open : { "\"", "a \"b", "\"a\"\"", "\"a\\\"", "'a\"" } ) {
      EXPECT_TRUE( tpcli::splitLine( open ).openQuote ) << open;
   }
}

// No word of the table hides another, and what the table asks for is in it.
TEST( CommandLine, HasAConsistentTable ) {
   for ( tpcli::OptionRow const & row : tpcli::optionRows() ) {
      EXPECT_EQ( &tpcli::optionRow( row.option ), &row ) << row.word;
      EXPECT_FALSE( row.excludes.has( row.option ) ) << row.word;
   }
   for ( tpcli::CommandRow const & row : tpcli::commandRows() ) {
      EXPECT_FALSE( row.path().empty() || row.help.empty() );
      for ( tpcli::CommandRow const & other : tpcli::commandRows() ) {
         bool const begins = std::ranges::equal(
            row.path(), other.path().first( std::min( row.path().size(), other.path().size() ) ) );
         EXPECT_TRUE( &row == &other || !begins ) << row.path().back();
      }
      for ( std::string_view const word : row.path().first( row.path().size() - 1 ) ) {
         EXPECT_FALSE( tpcli::groupHelp( word ).empty() ) << word;
      }
   }
   for ( unsigned number = 0; number <= static_cast< unsigned >( tpcli::Argument::words );
         ++number ) {
      tpcli::Argument const argument{ static_cast< uint8_t >( number ) };
      EXPECT_EQ( tpcli::argumentRow( argument ).argument, argument );
   }
}

} // namespace
