// State files: texts that say the same in other bytes or come in other windows, and texts that are
// broken anywhere.

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "cli/BoundShow.h"
#include "sources/FileError.h"
#include "sources/Source.h"
#include "sources/file/StateReader.h"
#include "sources/file/StateWriter.h"
#include "tests/Support.h"

#include <gmock/gmock.h>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <sys/mman.h>

#include <algorithm>

namespace {

constexpr std::string_view stateText = R"({"config":{"trafficPolicies":{"P":{"namedCounters":["a",
"b ü€😀"],"rules":[{"name":"first rule","match":{"ipv4":{"sources":["10.0.0.0/8","192.0.2.1/32"],
"destinationPrefixSets":["set"],"protocols":[{"protocol":6,"sourcePorts":[[1,2],3],"tcpFlags":[
"established"]},{"protocol":[7,9]}],"dscp":[46],"fragment":{"type":"offset","offsets":[1]},
"neighborProtocol":"bgp","ipOptions":true}},"actions":{"count":"a","drop":true,"log":false,"police":
{"rate":18446744073709551615,"unit":"kbps"}}},{"name":"second","sequence":7,"match":{"ipv6":null},
"actions":{"setDscp":0,"count":true}}]},"nothing":null},"cpu":{"default":["P","gone","nothing"]},
"interfaces":{"Et1":"P","Et2":["nothing"]}},"status":{"byteCounters":true,"perInterfaceCounting":true,"vrfs":["default"],
"ingressCounterGranularity":"per-policy","l3Interfaces":{"Et1":"default","Et2":null},"policies":{"P":{
"rules":{"second":{"families":["ipv6"],"packets":12},"first rule":{"families":["ipv4"],"counterId":1}},
"namedCounters":{"a":{"packets":1,"bytes":2,"interfaces":{"Et1":{"packets":1}}}},"interfaces":{"Et1":{
"ipv4":{"status":"failed","error":"no room"},"ipv6":{"status":3}}}}}}})";

class StateText : public testing::Test {
public:
   ~StateText() override { ::close( fd_ ); }

protected:
   static constexpr size_t whole = tpcli::InputFile::defaultStep;

   void keep( std::string_view text ) {
      EXPECT_EQ( ::ftruncate( fd_, 0 ), 0 );
      EXPECT_EQ( ::pwrite( fd_, text.data(), text.size(), 0 ),
                 static_cast< ssize_t >( text.size() ) );
   }
   // Reads so many bytes at once.
   tpcli::State read( std::string_view text, size_t step = whole ) {
      keep( text );
      tpcli::InputFile file( path_, step );
      return tpcli::readState( file );
   }
   // The error that the text is refused with; empty when it is read.
   std::string error( std::string_view text, size_t step = whole ) {
      try {
         read( text, step );
      } catch ( tpcli::FileError const & error ) {
         return error.what();
      }
      return "";
   }
   // All that is shown of the state.
   static std::string shown( tpcli::State const & s ) {
      using namespace TrafficPolicyCli;
      std::string all;
      for ( unsigned view = 0; view < 3; ++view ) {
         all +=
            test::reply( *Vorn::create< tpcli::BoundShowCpu >(
                            s.furtherVrfPolicies, s.config, s.status,
                            Vorn::create< TrafficPolicy::Counter >(), "", false, view == 1, false,
                            view == 2, true, s.vrfConfig, s.allVrfConfig, s.l3IntfStatusDir ),
                         2 );
         all += test::reply( *Vorn::create< tpcli::BoundShowInterface >(
                                s.furtherIntfPolicies, s.config, s.status,
                                Vorn::create< TrafficPolicy::Counter >(), "", false, view == 1,
                                false, view == 2, true, s.intfConfig, s.policyParamStatus ),
                             2 );
      }
      return all;
   }

   // What a snapshot of the state holds.
   std::string written( tpcli::State const & state ) const {
      int const fd = ::open( path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600 );
      wendo::WendoBuffer buffer( fd, wendo::WendoBuffer::viewCapacity, false );
      tpcli::formatState( buffer, state );
      buffer.flush();
      ::close( fd );
      return test::readFile( path_ );
   }
   // A state that is written is read as the same state.
   void checkRoundTrip( tpcli::State const & state ) {
      std::string const text = written( state );
      tpcli::State const again = read( text );
      ASSERT_EQ( shown( again ), shown( state ) ) << text;
      ASSERT_EQ( written( again ), text );
   }

   std::string path() const { return path_; }
   test::Random random_{ 5 };

private:
   // In memory, for it is written often.
   int fd_ = ::memfd_create( "state", 0 );
   std::string path_ = "/proc/self/fd/" + std::to_string( fd_ );
};

// White space between the tokens, and characters of strings in their escaped form.
TEST_F( StateText, IsReadWhateverItsForm ) {
   std::string const wanted = shown( read( stateText ) );
   EXPECT_THAT( wanted, testing::HasSubstr( "\"packetTotal\":12" ) );
   for ( unsigned i = 0; i < 300; ++i ) {
      std::string text;
      bool inString = false;
      unsigned const often = 1 + random_.below( 60 );
      for ( char const c : stateText ) {
         inString ^= c == '"';
         if ( inString && c != '"' && c > ' ' && random_.oneIn( often ) ) {
            char escape[8];
            std::snprintf( escape, sizeof escape, random_.oneIn( 2 ) ? "\\u%04x" : "\\u%04X", c );
            text += escape;
            continue;
         }
         text += c;
         if ( !inString && std::string_view( "{}[],:\"" ).find( c ) != std::string_view::npos
              && random_.oneIn( often ) ) {
            text.append( random_.below( 70 ), " \n\t\r"[random_.below( 4 )] );
         }
      }
      ASSERT_EQ( shown( read( text ) ), wanted ) << text;
   }
}

TEST_F( StateText, KnowsItsCounterStore ) {
   EXPECT_EQ( tpcli::findSource( "a/b" )->defaultCounterStore(), "a/b.counters" );
   EXPECT_EQ( tpcli::findSource( "-" )->defaultCounterStore(), "" );
}

// Wherever a window ends: in a name, in an escape, in a character of several bytes, in a number.
TEST_F( StateText, IsReadWhateverItsWindows ) {
   constexpr std::string_view text =
      R"( {"config": {"trafficPolicies":{"P \u00fc \ud83d\ude00 ü€😀":{"rules":[{"name"
:"\"\\\n","match":{"ipv4" : {"lengths":[12345]}},"actions":{"count":true,"drop" :false
}}]}},"cpu":{"v":"P ü 😀 \u00fc\u20ac\uD83D\uDE00"}},"status":{"policies":{"P ü 😀 ü\u20ac😀"
:{"rules":{"\u0022\u005c\u000A":{"families":["ipv4"],"packets": 18446744073709551615 }}}}}} )";
   std::string const wanted = shown( read( text ) );
   EXPECT_THAT( wanted, testing::StartsWith( R"({"trafficPolicies":{"P ü 😀 ü€😀":{)" ) );
   for ( auto const * part : { R"("ruleString":"\"\\\n",)", R"("low":12345,"high":12345)",
                               R"("count":18446744073709551615)" } ) {
      EXPECT_THAT( wanted, testing::HasSubstr( part ) );
   }
   for ( size_t step = 1; step <= text.size(); ++step ) {
      ASSERT_EQ( shown( read( text, step ) ), wanted ) << step;
   }
}

TEST_F( StateText, IsRefusedWithItsPlace ) {
   struct {
      char const * text;
      char const * wanted;
   } const cases[] = {
      { "{\"status\":{\n  \"vrfs\" : [\"a\",\n\t\"a\" ]}}", "3,2 /status/vrfs/1" },
      { "{\"config\":\n{\"cpu\": \n{\"\u00fc\": \"P\", \"\u00fc\":  \"Q\"}}}",
        "3,20 /config/cpu/\u00fc" },
      { R"({"config":{"trafficPolicies":{"P":{"rules":[{"name":"R"},
{"name":"S"},{"name":"R"}]}}}})",
        "2,14 /config/trafficPolicies/P/rules/2" },
      { R"({"config":{"trafficPolicies":{"P":{"rules":[{"name":"R","sequence":30},
{"name":"S","sequence":2}, {"name":"T"}]}}}})",
        "2,28 /config/trafficPolicies/P/rules/2" },
      { " []", "1,2 " },
      { "{\"status\":{\n\"vrfs\":[\"\u20ac\" \"a\"]}}", "2,15" },
   };
   for ( auto const & [text, wanted] : cases ) {
      try {
         read( text );
         ADD_FAILURE() << text;
      } catch ( tpcli::FileError const & error ) {
         auto const & place = error.place();
         EXPECT_EQ( std::to_string( place.line ) + "," + std::to_string( place.column )
                       + ( place.pointer ? " " + *place.pointer : "" ),
                    wanted );
         EXPECT_EQ( error.file(), path() );
         EXPECT_TRUE( std::string_view( error.what() ).ends_with( ": " + error.message() ) );
      }
   }
}

// What another parser says of the text: empty for JSON, else the error as ours has it.
std::string syntaxError( std::string const & text ) {
   rapidjson::MemoryStream stream( text.data(), text.size() );
   rapidjson::BaseReaderHandler<> ignore;
   rapidjson::Reader reader;
   constexpr unsigned flags =
      rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
   auto const result = reader.Parse< flags >( stream, ignore );
   if ( !result.IsError() ) {
      return "";
   }
   std::string_view const before( text.data(), result.Offset() );
   return "line " + std::to_string( std::count( before.begin(), before.end(), '\n' ) + 1 )
          + ", column " + std::to_string( before.size() - ( before.rfind( '\n' ) + 1 ) + 1 ) + ": "
          + rapidjson::GetParseError_En( result.Code() );
}

// Changes of a byte or of a few, most of them where the text's structure is.
std::string broken( test::Random & random, std::string_view whole = stateText ) {
   static constexpr std::string_view bytes = "{}[],:\"\\ 0123456789-.eEtrufalsn\n\x01\x80\xc3\xff";
   std::string text( whole );
   for ( unsigned left = 1 + random.below( 3 ); left > 0; --left ) {
      auto const size = static_cast< unsigned >( text.size() );
      size_t at = random.below( size );
      at =
         random.oneIn( 4 ) ? at : std::min( text.find_first_of( "{}[],:\"", at ), text.size() - 1 );
      char const byte = bytes[random.below( static_cast< unsigned >( bytes.size() ) )];
      switch ( random.below( 5 ) ) {
      case 0:
         text.erase( at, 1 + random.below( 3 ) );
         break;
      case 1:
         text.insert( at, 1, byte );
         break;
      case 2:
         text[at] = byte;
         break;
      case 3:
         text.insert( at, text.substr( random.below( size ), random.below( 30 ) ) );
         break;
      default:
         text.resize( random.oneIn( 10 ) ? at : size );
         text += random.oneIn( 20 ) ? std::string( 1, byte ) : "";
      }
      if ( text.empty() ) {
         break;
      }
   }
   return text;
}

// The error of the text alone, as JSON; empty when it has none.
std::string ownSyntaxError( std::string const & path, size_t step ) {
   try {
      tpcli::InputFile file( path, step );
      tpcli::JsonText text( file );
      text.skip();
      text.end();
   } catch ( tpcli::FileError const & error ) {
      return std::string( error.what() ).substr( path.size() + 2 );
   }
   return "";
}

TEST_F( StateText, IsRefusedWhereverItIsBroken ) {
   unsigned refused = 0;
   unsigned valid = 0;
   for ( unsigned i = 0; i < 10'000; ++i ) {
      std::string const text = broken( random_ );
      std::string const message = error( text );
      std::string const wrong = syntaxError( text );
      if ( random_.oneIn( 5 ) ) {
         size_t const step = 1 + random_.below( 100 );
         ASSERT_EQ( error( text, step ), message ) << step << text;
         ASSERT_EQ( ownSyntaxError( path(), step ), wrong ) << step << text;
      }
      valid += wrong.empty();
      refused += !message.empty();
      ASSERT_TRUE( message.empty() || message.starts_with( path() + ": " ) ) << message;
      ASSERT_EQ( message.find( '\n' ), message.npos ) << message;
      ASSERT_TRUE( !message.empty() || wrong.empty() ) << text;
   }
   EXPECT_GT( refused, 7000u );
   EXPECT_GT( valid, 300u );
}

// Of the files that are there, and of changed texts that are states all the same.
TEST_F( StateText, IsWrittenAsItIsRead ) {
   unsigned states = 0;
   for ( char const * folder : { "examples", "tests/cases" } ) {
      std::filesystem::path const path = std::filesystem::path( TP_SOURCE_DIR ) / folder;
      for ( auto const & file : std::filesystem::recursive_directory_iterator( path ) ) {
         if ( file.path().extension() == ".json" ) {
            try {
               checkRoundTrip( tpcli::findSource( file.path() )->read().state );
               states += 1;
            } catch ( tpcli::FileError const & ) {
               // A counter store.
            }
         }
      }
   }
   EXPECT_GT( states, 15u );
   for ( unsigned i = 0; i < 1'500; ++i ) {
      std::string const text = broken( random_ );
      try {
         checkRoundTrip( read( text ) );
         states += 1;
      } catch ( tpcli::FileError const & ) {
      }
      ASSERT_FALSE( HasFatalFailure() ) << text;
   }
   EXPECT_GT( states, 100u );
}

// Members of other models may stand first, and may be large.
TEST_F( StateText, OfSwitchesIsReadBehindOthers ) {
   for ( char const * name :
         { "examples/openconfig/campus-edge.json", "examples/sonic/config_db.json" } ) {
      std::string text = test::readFile( std::filesystem::path( TP_SOURCE_DIR ) / name );
      keep( text );
      std::string const wanted = shown( tpcli::findSource( path() )->read().state );
      keep( text.insert( 1, R"("vendor:things":[")" + std::string( 300000, 'x' ) + "\"]," ) );
      EXPECT_EQ( shown( tpcli::findSource( path() )->read().state ), wanted ) << name;
   }
}

// Documents of switches: whatever is changed in them, they are read or refused, and what is read is
// shown and written.
TEST_F( StateText, OfSwitchesIsReadOrRefused ) {
   unsigned read_ = 0;
   unsigned refused = 0;
   for ( char const * name :
         { "examples/openconfig/campus-edge.json", "examples/openconfig/control-plane.json",
           "tests/cases/openconfig/loose.json", "tests/cases/openconfig/twice.json",
           "examples/sonic/config_db.json", "tests/cases/sonic/config.json" } ) {
      std::string const all = test::readFile( std::filesystem::path( TP_SOURCE_DIR ) / name );
      for ( unsigned i = 0; i < 400; ++i ) {
         std::string const text = broken( random_, all );
         keep( text );
         try {
            tpcli::State const state = tpcli::findSource( path() )->read().state;
            read_ += 1;
            if ( i % 4 == 0 ) {
               checkRoundTrip( state );
               ASSERT_FALSE( HasFatalFailure() ) << text;
            }
         } catch ( tpcli::FileError const & error ) {
            refused += 1;
            ASSERT_EQ( std::string( error.what() ).find( path() + ": " ), 0u ) << error.what();
         }
      }
   }
   EXPECT_GT( read_, 200u );
   EXPECT_GT( refused, 1000u );
}

} // namespace
