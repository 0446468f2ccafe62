// The trace facility: a debug log with levels, for developers.
//
// A message of a level that is off costs one test of a mask and formats nothing.

#pragma once

#include <cstdint>
#include <sstream>
#include <string_view>

namespace Vorn {

// The constant part of a message, and the function that it comes from: the caller by default.
struct TraceText {
   constexpr TraceText( char const * messageText,
                        char const * callingFunction = __builtin_FUNCTION() )
      : text( messageText )
      , function( callingFunction ) {}
   char const * text;
   char const * function;
};

class TraceFacility {
public:
   // Takes a finished message. Called for messages of enabled levels only.
   using Sink = void ( * )( TraceFacility const & facility, int level, std::string_view function,
                            std::string_view text );

   constexpr TraceFacility( char const * name, Sink sink )
      : name_( name )
      , sink_( sink ) {}

   std::string_view name() const { return name_; }

   // Bit n enables level n (0 to 31).
   uint32_t levelMask() const { return mask_; }
   void levelMaskIs( uint32_t mask ) { mask_ = mask; }
   void sinkIs( Sink sink ) { sink_ = sink; }
   bool enabled( int level ) const { return mask_ >> level & 1; }

   // The message is the text followed by the values, each formatted by its operator<<.
   template< typename... Values >
   void write( int level, TraceText message, Values const &... values ) const {
      if ( enabled( level ) ) [[unlikely]] {
         format( level, message, values... );
      }
   }

   // The default sink: a line on standard error.
   static void toStandardError( TraceFacility const & facility, int level,
                                std::string_view function, std::string_view text );

private:
   // Not inlined: a caller would carry the stream's stack space and its clean-up.
   template< typename... Values >
   [[gnu::noinline, gnu::cold]] void format( int level, TraceText message,
                                             Values const &... values ) const {
      std::ostringstream text;
      text << message.text;
      ( ( text << values ), ... );
      // A template's name without its arguments.
      std::string_view const function = message.function;
      sink_( *this, level, function.substr( 0, function.find( '<' ) ), text.view() );
   }

   char const * name_;
   Sink sink_;
   uint32_t mask_ = 0;
};

} // namespace Vorn
