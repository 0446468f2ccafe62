#include "cli/Report.h"

#include "cli/JsonText.h"
#include "cli/Printable.h"

#include <algorithm>
#include <cstdio>

namespace tpcli {

namespace {

// The begin of a UTF-8 character.
bool beginsCharacter( char byte ) {
   return ( static_cast< unsigned char >( byte ) & 0xc0 ) != 0x80;
}

size_t characters( std::string_view text ) {
   return static_cast< size_t >( std::ranges::count_if( text, beginsCharacter ) );
}

// The line, and a caret under each character of what is wrong in it.
std::string pointed( UsageError const & error ) {
   std::string line = error.line();
   line.resize( std::max( line.size(), error.begin() ), ' ' );
   std::string_view const text = line;
   std::string const before = printable( text.substr( 0, error.begin() ) );
   std::string const wrong = printable( text.substr( error.begin(), error.end() - error.begin() ) );
   std::string result = "   " + printable( error.line() ) + "\n   ";
   result.append( characters( before ), ' ' );
   return result.append( std::max( characters( wrong ), size_t{ 1 } ), '^' ) + '\n';
}

void write( std::string const & text ) {
   std::fwrite( text.data(), 1, text.size(), stderr );
}

} // namespace

std::string Report::place() const {
   return inputLine_ == 0 ? "" : "line " + std::to_string( inputLine_ ) + ": ";
}

void Report::usage( UsageError const & error ) const {
   if ( !json_ ) {
      write( "tpcli: " + place() + printable( error.what() ) + '\n'
             + ( error.line().empty() ? "" : pointed( error ) ) );
      return;
   }
   std::string text = R"({"error":{)" + members( error.what() );
   if ( inputLine_ != 0 && !error.line().empty() ) {
      text += R"(,"column":)"
              + std::to_string( characters( error.line().substr( 0, error.begin() ) ) + 1 );
   }
   write( text + "}}\n" );
}

// The members of a message that comes from a line of standard input.
std::string Report::members( std::string_view message ) const {
   std::string const place =
      inputLine_ == 0 ? "" : R"(,"file":"standard input","line":)" + std::to_string( inputLine_ );
   return R"("message":)" + jsonText( message ) + place;
}

void Report::error( std::string_view message ) const {
   write( json_ ? R"({"error":{)" + members( message ) + "}}\n"
                : "tpcli: " + place() + printable( message ) + '\n' );
}

void Report::error( FileError const & error ) const {
   if ( !json_ ) {
      Report::error( std::string_view( error.what() ) );
      return;
   }
   std::string text = R"({"error":{"message":)" + jsonText( place() + error.message() );
   if ( !error.file().empty() ) {
      text += R"(,"file":)" + jsonText( error.file() );
   }
   if ( error.place().pointer ) {
      text += R"(,"place":)" + jsonText( *error.place().pointer );
   }
   if ( error.place().line > 0 ) {
      text += R"(,"line":)" + std::to_string( error.place().line ) + R"(,"column":)"
              + std::to_string( error.place().column );
   }
   write( text + "}}\n" );
}

void Report::hint( std::string_view message ) const {
   write( json_ ? R"({"hint":{)" + members( message ) + "}}\n"
                : "tpcli: " + place() + printable( message ) + '\n' );
}

void Report::outOfMemory() const noexcept {
   std::fputs( json_ ? "{\"error\":{\"message\":\"out of memory\"}}\n" : "tpcli: out of memory\n",
               stderr );
}

} // namespace tpcli
