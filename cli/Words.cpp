#include "cli/Words.h"

#include <utility>

namespace tpcli {

namespace {

bool isSpace( char c ) {
   return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Takes a line apart, character by character.
class Splitter {
public:
   explicit Splitter( CommandText & text )
      : text_( text ) {}

   void split() {
      std::string_view const line = text_.line;
      for ( ; at_ < line.size() && !isComment( line[at_] ); ++at_ ) {
         char const c = line[at_];
         if ( quote_ == 0 && isSpace( c ) ) {
            endWord( at_ );
         } else if ( quote_ == 0 && ( c == '"' || c == '\'' ) ) {
            word( false );
            quote_ = c;
         } else if ( quote_ != 0 && c == quote_ ) {
            quote_ = 0;
         } else if ( c == '\\' && quote_ != '\'' && at_ + 1 < line.size() ) {
            word( false ).text += line[++at_];
         } else {
            word( c == '|' && quote_ == 0 ).text += c;
         }
      }
      endWord( at_ );
      text_.openQuote = quote_ != 0;
   }

private:
   // The word that the character belongs to.
   Word & word( bool pipe ) {
      if ( !std::exchange( inWord_, true ) ) {
         text_.words.push_back( { .text = {}, .begin = at_, .end = at_, .mayPipe = pipe } );
      }
      return text_.words.back();
   }
   void endWord( size_t end ) {
      if ( std::exchange( inWord_, false ) ) {
         text_.words.back().end = end;
      }
   }
   bool isComment( char c ) const {
      return !inWord_ && ( c == '#' || ( c == '!' && text_.words.empty() ) );
   }

   CommandText & text_;
   size_t at_ = 0;
   char quote_ = 0;
   bool inWord_ = false;
};

} // namespace

CommandText splitLine( std::string line ) {
   CommandText text{ .line = std::move( line ), .words = {} };
   Splitter( text ).split();
   return text;
}

CommandText joinArguments( std::vector< std::string > const & arguments ) {
   CommandText text;
   for ( std::string const & argument : arguments ) {
      text.line += text.line.empty() ? "" : " ";
      size_t const begin = text.line.size();
      bool const mayPipe = argument.starts_with( '|' );
      text.line += mayPipe ? argument : quotedWord( argument );
      text.words.push_back( { argument, begin, text.line.size(), mayPipe } );
   }
   return text;
}

std::string quotedWord( std::string_view word ) {
   if ( !word.empty() && word.find_first_of( " \t\r\n\"'\\|#!?" ) == word.npos ) {
      return std::string( word );
   }
   std::string result( 1, '"' );
   for ( char const c : word ) {
      result.append( c == '"' || c == '\\' ? "\\" : "" ) += c;
   }
   return result += '"';
}

} // namespace tpcli
