// The words of the program and of a command.

#include "cli/CommandLine.h"

#include "cli/Errors.h"
#include "tests/Support.h"

#include <getopt.h>
#include <gmock/gmock.h>

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
      { { "-x" }, "unknown option -x" },
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

// Words come back from a line, in quotes and with backslashes where they are needed and where not.
TEST( CommandLine, SplitsALineIntoItsWords ) {
   test::Random random( 8 );
   for ( unsigned i = 0; i < 5000; ++i ) {
      Words words( random.below( 5 ) );
      std::string line( random.below( 2 ), '\t' );
      for ( std::string & word : words ) {
         std::string written;
         bool quoted = false;
         for ( unsigned left = random.below( 8 ); left > 0; --left ) {
            if ( random.oneIn( 4 ) ) {
               quoted = !quoted;
               written += '"';
            }
            char const c = "ab \t\r\"\\|-"[random.below( 9 )];
            bool const isSpace = c == ' ' || c == '\t' || c == '\r';
            bool const mustEscape = c == '"' || c == '\\' || ( isSpace && !quoted );
            written.append( mustEscape || random.oneIn( 6 ) ? "\\" : "" ) += c;
            word += c;
         }
         written += quoted ? "\"" : written.empty() ? "\"\"" : "";
         line += written + " \r\t"[random.below( 3 )] + std::string( random.below( 2 ), ' ' );
      }
      ASSERT_EQ( tpcli::splitLine( line ), words ) << line;
   }
   EXPECT_EQ( tpcli::splitLine( "a\\" ), Words{ "a\\" } );
   for ( char const * open : { "\"", "a \"b", "\"a\"\"", "\"a\\\"" } ) {
      EXPECT_THROW( tpcli::splitLine( open ), tpcli::UsageError ) << open;
   }
}

} // namespace
