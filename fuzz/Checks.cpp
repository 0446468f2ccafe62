#include "fuzz/Checks.h"

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "cli/CommandWalk.h"
#include "cli/Metrics.h"
#include "cli/RecordFilter.h"
#include "cli/ShowCommand.h"
#include "cli/StateCheck.h"
#include "cli/StatusCommand.h"
#include "cli/Words.h"
#include "sources/file/CounterStore.h"
#include "sources/file/CounterStoreWriter.h"
#include "sources/file/StateWriter.h"
#include "tests/TextBuffer.h"

#include <fcntl.h>
#include <rapidjson/document.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>

namespace fuzz {

namespace {

using wendo::OutputFormat_t;
using StorePtr = Vorn::Ptr< TrafficPolicy::Counter >;

// A file in memory, for the readers to open and the shows to write to.
class MemoryFile {
public:
   MemoryFile()
      : fd_( ::memfd_create( "fuzz", MFD_CLOEXEC ) ) {
      require( fd_ >= 0, "no file in memory" );
   }
   int fd() const { return fd_; }
   std::string path() const { return "/proc/self/fd/" + std::to_string( fd_ ); }
   void clear() const { set( "" ); }
   void set( std::string_view bytes ) const {
      require( ::ftruncate( fd_, 0 ) == 0 && ::lseek( fd_, 0, SEEK_SET ) == 0
                  && ::pwrite( fd_, bytes.data(), bytes.size(), 0 )
                        == static_cast< ssize_t >( bytes.size() ),
               "the file in memory cannot be written" );
   }
   std::string text() const {
      std::string text( static_cast< size_t >( ::lseek( fd_, 0, SEEK_END ) ), '\0' );
      require( ::pread( fd_, text.data(), text.size(), 0 ) == static_cast< ssize_t >( text.size() ),
               "the file in memory cannot be read" );
      return text;
   }

private:
   int fd_;
};

std::string written( OutputFormat_t format,
                     std::function< void( wendo::RendererV2 & ) > const & write ) {
   test::TextBuffer buffer;
   wendo::RendererV2 renderer( format, buffer );
   write( renderer );
   return buffer.text();
}

rapidjson::Document parsed( std::string const & text ) {
   rapidjson::Document document;
   document.Parse< rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag >(
      text.data(), text.size() );
   require( !document.HasParseError() && text.back() == '\n', "JSON that is none: " + text );
   return document;
}

std::string shown( std::string const & line, OutputFormat_t format, tpcli::State const & state,
                   StorePtr const & store ) {
   static MemoryFile const output;
   output.clear();
   tpcli::Command const command = tpcli::parseCommand( tpcli::splitLine( line ), false );
   tpcli::makeShow( command, tpcli::filtered( state, store, command ), store )
      ->render( static_cast< unsigned >( output.fd() ), static_cast< unsigned >( format ), 1 );
   return output.text();
}

std::string_view textOf( rapidjson::Value const & value ) {
   return { value.GetString(), value.GetStringLength() };
}

// Names in text are as they are, so they are looked for, in the order of the JSON.
void checkSameRules( std::string const & text, rapidjson::Document const & json ) {
   size_t at = 0;
   auto const find = [&]( std::string const & line ) {
      at = text.find( line, at );
      require( at != text.npos, "not in the text: " + line );
      at += line.size();
   };
   for ( auto const & policy : json["trafficPolicies"].GetObject() ) {
      find( "Traffic policy " + std::string( textOf( policy.name ) ) + '\n' );
      auto const & rules = policy.value["rules"];
      find( "   Total number of rules configured: " + std::to_string( rules.Size() ) + '\n' );
      for ( auto const & rule : rules.GetArray() ) {
         find( "      match " + std::string( textOf( rule["ruleString"] ) ) + ' '
               + std::string( textOf( rule["matchOption"] ) ) + '\n' );
      }
   }
}

constexpr char const * variants[] = {
   "",
   " summary",
   " detail per-interface",
   " errors",
   " counters per-interface",
   " failed",
   " nonzero",
   " unused counters",
   " rule a",
   " interface Ethernet1",
   " vrf a",
   " policy a",
   " policy a detail rule b raw",
};

std::string allShows( tpcli::State const & state, StorePtr const & store ) {
   std::string replies;
   for ( char const * const side : { "cpu", "interface" } ) {
      for ( char const * const variant : variants ) {
         std::string const line = std::string( "show traffic-policy " ) + side + variant;
         std::string const text = shown( line, OutputFormat_t::TEXT, state, store );
         std::string const json = shown( line, OutputFormat_t::JSON, state, store );
         auto const document = parsed( json );
         if ( *variant == '\0' ) {
            checkSameRules( text, document );
         }
         replies += text + json;
      }
   }
   return replies;
}

} // namespace

void require( bool holds, std::string_view message ) {
   if ( !holds ) {
      std::fprintf( stderr, "%.*s\n", static_cast< int >( message.size() ), message.data() );
      std::abort();
   }
}

std::string fileOf( std::string_view bytes ) {
   static MemoryFile const file;
   file.set( bytes );
   return file.path();
}

void checkError( tpcli::FileError const & error ) {
   require( error.place().line > 0 && error.place().column > 0,
            std::string( "no place in the error: " ) + error.what() );
}

void checkShows( tpcli::State const & state, StorePtr const & store ) {
   allShows( state, store );
}

void checkCommands( tpcli::State const & state ) {
   std::string const before = allShows( state, nullptr );
   for ( auto const format : { OutputFormat_t::TEXT, OutputFormat_t::JSON } ) {
      written( format, [&]( auto & renderer ) { tpcli::writeStatus( renderer, state ); } );
   }
   parsed( written( OutputFormat_t::JSON,
                    [&]( auto & renderer ) { tpcli::writeStatus( renderer, state ); } ) );
   written( OutputFormat_t::TEXT,
            [&]( auto & renderer ) { tpcli::writeMetrics( renderer, state, {} ); } );
   tpcli::StateCheck const check( state );
   std::string const snapshot = written( OutputFormat_t::JSON, [&]( auto & renderer ) {
      tpcli::formatState( renderer.buffer(), state );
   } );
   parsed( snapshot );
   try {
      auto const again = tpcli::findSource( fileOf( snapshot ) )->read();
      require( allShows( again.state, nullptr ) == before, "a snapshot shows otherwise" );
   } catch ( tpcli::FileError const & error ) {
      require( false, std::string( "a snapshot is refused: " ) + error.what() );
   }
}

void checkClear( tpcli::State const & state ) {
   auto const store = Vorn::create< TrafficPolicy::Counter >();
   TrafficPolicyCli::trafficPolicyCounterFactory( state.status, store )->clearCounter();
   checkStore( state, *store );
   for ( char const * const side : { "cpu", "interface" } ) {
      std::string const line = std::string( "show traffic-policy " ) + side + " nonzero counters";
      parsed( shown( line, OutputFormat_t::JSON, state, store ) );
   }
   checkShows( state, store );
}

std::string checkStore( tpcli::State const & state, TrafficPolicy::Counter const & store ) {
   auto const format = []( TrafficPolicy::Counter const & one ) {
      test::TextBuffer buffer;
      tpcli::formatCounterStore( buffer, one );
      return buffer.text();
   };
   std::string text = format( store );
   parsed( text );
   try {
      require( format( *tpcli::readCounterStore( fileOf( text ), *state.status ) ) == text,
               "a store is read otherwise than it was written" );
   } catch ( tpcli::FileError const & error ) {
      require( false, std::string( "a store that was written is refused: " ) + error.what() );
   }
   return text;
}

} // namespace fuzz
