#include "sources/json/JsonReader.h"

#include "sources/FileError.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace tpcli {

namespace {

using simdjson::ondemand::json_type;

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

// The lowest set bit is in the first of the eight bytes that is a quote or a backslash; none is set
// when there is none. For little-endian machines, as the switch's is.
uint64_t quotesOrBackslashes( char const * bytes ) {
   constexpr uint64_t ones = 0x0101010101010101;
   uint64_t word = 0;
   std::memcpy( &word, bytes, sizeof word );
   auto const zeroBytes = []( uint64_t w ) { return ( w - ones ) & ~w & ones * 0x80; };
   return zeroBytes( word ^ ( ones * '"' ) ) | zeroBytes( word ^ ( ones * '\\' ) );
}

// The text of a string token whose quotes are at its ends and that needs no unescaping; a null view
// when it does.
std::string_view plainString( char const * token ) {
   char const * end = token;
   uint64_t found = 0;
   for ( ; ( found = quotesOrBackslashes( end ) ) == 0; end += 8 ) {
   }
   end += std::countr_zero( found ) / 8;
   return *end == '"' ? std::string_view( token, static_cast< size_t >( end - token ) )
                      : std::string_view();
}

std::string lineAndColumn( std::string_view text, size_t offset ) {
   std::string_view const before = text.substr( 0, std::min( offset, text.size() ) );
   auto const line = std::count( before.begin(), before.end(), '\n' ) + 1;
   size_t const lineBegin = before.rfind( '\n' ) + 1; // npos + 1 is 0
   return "line " + std::to_string( line ) + ", column "
          + std::to_string( before.size() - lineBegin + 1 );
}

} // namespace

std::string quoted( std::string_view text ) {
   std::string result = "\"";
   appendVisible( result, text );
   return result + "\"";
}

std::string Place::text() const {
   if ( !parent ) {
      return "";
   }
   std::string path = parent->text() + "/";
   if ( isElement ) {
      path += std::to_string( index );
   } else {
      appendVisible( path, pointerToken( name ) );
   }
   return path;
}

namespace {

// Fails when the text is no JSON, naming line and column. The fast parser does not say where a
// document breaks; this second, exact one does, once there is an error to report.
void checkSyntax( JsonSource const & source ) {
   std::string_view const text = source.file.text();
   rapidjson::MemoryStream stream( text.data(), text.size() );
   rapidjson::EncodedInputStream< rapidjson::UTF8<>, rapidjson::MemoryStream > input( stream );
   rapidjson::BaseReaderHandler<> ignore;
   rapidjson::Reader reader;
   constexpr unsigned flags =
      rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
   auto const result = reader.Parse< flags >( input, ignore );
   if ( result.IsError() ) {
      throw FileError( source.path + ": " + lineAndColumn( text, result.Offset() ) + ": "
                       + rapidjson::GetParseError_En( result.Code() ) );
   }
}

} // namespace

void failSyntax( JsonSource const & source, simdjson::error_code error ) {
   checkSyntax( source );
   if ( error == simdjson::SCALAR_DOCUMENT_AS_VALUE ) {
      throw FileError( source.path + ": /: the document is not an object" );
   }
   throw FileError( source.path + ": " + simdjson::error_message( error ) );
}

void JsonValue::fail( std::string const & message ) const {
   std::string const place = place_->text();
   throw FileError( source_->path + ": " + ( place.empty() ? "/" : place ) + ": " + message );
}

json_type JsonValue::type() {
   json_type type{};
   check( value_.type().get( type ) );
   return type;
}

void JsonValue::failKind( simdjson::error_code error, char const * wanted ) {
   if ( error == simdjson::INCORRECT_TYPE ) {
      fail( rawText() + " is not " + wanted );
   }
   failSyntax( *source_, error );
}

std::string JsonValue::rawText() {
   switch ( type() ) {
   case json_type::object:
      return "an object";
   case json_type::array:
      return "a list";
   case json_type::string:
      return quoted( string() );
   default:
      break;
   }
   std::string_view token = value_.raw_json_token();
   return std::string( token.substr( 0, token.find_first_of( " \t\r\n,]}" ) ) );
}

std::string_view JsonValue::key( simdjson::ondemand::field & field ) {
   if ( std::string_view const plain = plainString( field.key().raw() ); plain.data() ) {
      return plain;
   }
   std::string_view name;
   check( field.unescaped_key().get( name ) );
   return name;
}

std::string_view JsonValue::string() {
   char const * const token = value_.raw_json_token().data();
   if ( token[0] == '"' ) {
      if ( std::string_view const plain = plainString( token + 1 ); plain.data() ) {
         get( value_.get_raw_json_string(), "a string" );
         return plain;
      }
   }
   return get( value_.get_string(), "a string" );
}

std::string_view JsonValue::name( std::string_view what ) {
   std::string_view const text = string();
   if ( text.empty() ) {
      fail( "empty, where " + std::string( what ) + " is needed" );
   }
   return text;
}

uint64_t JsonValue::number( std::string_view what, uint64_t maximum ) {
   uint64_t number = 0;
   if ( value_.get_uint64().get( number ) || number > maximum ) {
      checkSyntax( *source_ ); // a number at the end of a cut file is not to blame
      fail( rawText() + " is not " + std::string( what ) + " (0 to " + std::to_string( maximum )
            + ")" );
   }
   return number;
}

double JsonValue::real() {
   double number = 0;
   if ( value_.get_double().get( number ) ) {
      checkSyntax( *source_ );
      fail( rawText() + " is not a number" );
   }
   return number;
}

bool JsonValue::boolean() {
   return get( value_.get_bool(), "true or false" );
}

bool JsonValue::null() {
   if ( type() != json_type::null ) {
      return false;
   }
   bool spelt = false;
   if ( value_.is_null().get( spelt ) || !spelt ) {
      failSyntax( *source_, simdjson::N_ATOM_ERROR );
   }
   return true;
}

} // namespace tpcli
