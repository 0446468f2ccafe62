#include "sources/json/JsonReader.h"

#include "sources/FileError.h"

#include <charconv>
#include <system_error>

namespace tpcli {

namespace {

void appendVisible( std::string & text, std::string_view name ) {
   static constexpr char hexDigits[] = "0123456789abcdef";
   for ( char const c : name ) {
      auto const byte = static_cast< unsigned char >( c );
      if ( byte < 0x20 || byte == 0x7f ) {
         text += "\\u00";
         text += hexDigits[byte >> 4];
         text += hexDigits[byte & 0xf];
      } else {
         text += c;
      }
   }
}

std::string pointerToken( std::string_view name ) {
   std::string token;
   for ( char const c : name ) {
      token += c == '~' ? "~0" : c == '/' ? "~1" : std::string( 1, c );
   }
   return token;
}

} // namespace

std::string quoted( std::string_view text ) {
   std::string result = "\"";
   appendVisible( result, text );
   return result + "\"";
}

std::string Place::pointer() const {
   if ( !parent ) {
      return "";
   }
   std::string path = parent->pointer() + "/";
   if ( isElement ) {
      path += std::to_string( index );
   } else {
      appendVisible( path, pointerToken( name ) );
   }
   return path;
}

void JsonValue::fail( std::string const & message ) const {
   throw FileError( text_->name(), message,
                    { place_->pointer(), place_->position.line, place_->position.column } );
}

void JsonValue::failElement( size_t index, JsonText::Position position,
                             std::string const & message ) const {
   Place const place{ .parent = place_, .index = index, .isElement = true, .position = position };
   JsonValue( *text_, place ).fail( message );
}

void JsonValue::failKind( char const * wanted ) {
   fail( rawText() + " is not " + wanted );
}

void JsonValue::failUnknown( std::string_view name ) {
   std::string const stable( name );
   Place const place{ .parent = place_, .name = stable, .position = text_->memberValue() };
   JsonValue( *text_, place ).fail( "unknown member" );
}

std::string JsonValue::rawText() {
   switch ( type() ) {
   case JsonType::object:
      return "an object";
   case JsonType::list:
      return "a list";
   case JsonType::string:
      return quoted( string() );
   default:
      return text_->scrap();
   }
}

std::string_view JsonValue::name( std::string_view what ) {
   std::string_view const text = string();
   if ( text.empty() ) {
      fail( "empty, where " + std::string( what ) + " is needed" );
   }
   return text;
}

uint64_t JsonValue::anyNumber( std::string_view what, uint64_t maximum ) {
   auto const wanted = std::string( what ) + " (0 to " + std::to_string( maximum ) + ")";
   if ( !isNumber() ) {
      failKind( wanted.c_str() );
   }
   std::string const text( text_->number() );
   uint64_t number = 0;
   auto const [end, error] = std::from_chars( text.data(), text.data() + text.size(), number );
   bool const whole = error == std::errc() && end == text.data() + text.size();
   if ( !whole || number > maximum ) {
      // A number at the end of a cut file is not to blame.
      place_->isElement ? text_->element( false ) : text_->member( false );
      fail( text + " is not " + wanted );
   }
   return number;
}

double JsonValue::real() {
   if ( !isNumber() ) {
      failKind( "a number" );
   }
   std::string const text( text_->number() );
   double number = 0;
   std::from_chars( text.data(), text.data() + text.size(), number );
   return number;
}

std::string_view JsonValue::numberText() {
   if ( !isNumber() ) {
      failKind( "a number" );
   }
   return text_->number();
}

bool JsonValue::boolean() {
   text_->next();
   bool const isTrue = text_->isWord( "true" );
   if ( !isTrue && !text_->isWord( "false" ) ) {
      failKind( "true or false" );
   }
   return isTrue;
}

bool JsonValue::null() {
   bool const isNull = text_->next() == 'n';
   if ( isNull ) {
      text_->word( "null" );
   }
   return isNull;
}

} // namespace tpcli
