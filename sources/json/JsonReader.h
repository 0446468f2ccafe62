// Strict reading of a JSON document, straight from the parser into whatever the caller builds.
//
// The caller says which members an object has and what to do with each; everything else is an error
// that names the file and the place:
//
//    value.object( required( "rate", [ & ]( JsonValue v ) { rate = v.number( ... ); } ),
//                  optional( "unit", [ & ]( JsonValue v ) { unit = ...; } ) );

#pragma once

#include "sources/Memory.h"
#include "sources/json/InputFile.h"

#include <simdjson.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tpcli {

// Where in the document a value stands. A chain on the stack: it costs nothing until it is printed.
struct Place {
   Place const * parent = nullptr;
   std::string_view name;
   size_t index = 0; // when there is no name: in a list
   bool isElement = false;

   // As a JSON pointer (RFC 6901), control characters escaped so that it stays one line.
   std::string text() const;
};

// The document of one file, while it is read.
struct JsonSource {
   std::string const & path;
   InputFile const & file;
};

// The error of a file that is no JSON: names line and column.
[[noreturn]] void failSyntax( JsonSource const & source, simdjson::error_code error );

// One member that an object may have, and what to do with its value.
template< typename Action >
struct Member {
   std::string_view name;
   Action const & action;
   bool isRequired;
};
template< typename Action >
Member< Action > required( std::string_view name, Action const & action ) {
   return { name, action, true };
}
template< typename Action >
Member< Action > optional( std::string_view name, Action const & action ) {
   return { name, action, false };
}

// A value that is about to be read, once. Errors throw FileError.
class JsonValue {
public:
   JsonValue( JsonSource const & source, simdjson::ondemand::value value, Place const & place )
      : source_( &source )
      , value_( value )
      , place_( &place ) {}

   // An object with exactly these members, in any order.
   template< typename... Actions >
   void object( Member< Actions > const &... members );
   // An object with names for keys: calls the action with each name and value.
   template< typename Action >
   void map( Action const & action );
   // A list: calls the action with each element.
   template< typename Action >
   void list( Action const & action );

   // A whole number from 0 to the maximum; `what` names the kind in the error ("a port").
   uint64_t number( std::string_view what, uint64_t maximum = ~uint64_t{ 0 } );
   double real();
   bool boolean();
   // A string; valid until the next string is read.
   std::string_view string();
   // A string that is not empty.
   std::string_view name( std::string_view what );
   // True, and the value is read, when it is null.
   bool null();

   simdjson::ondemand::json_type type();
   bool isString() { return type() == simdjson::ondemand::json_type::string; }
   bool isNumber() { return type() == simdjson::ondemand::json_type::number; }
   bool isList() { return type() == simdjson::ondemand::json_type::array; }
   bool isBoolean() { return type() == simdjson::ondemand::json_type::boolean; }

   // The error of this value.
   [[noreturn]] void fail( std::string const & message ) const;

private:
   // What the parser gives for this value; fails when that is of another kind than wanted.
   template< typename T >
   T get( simdjson::simdjson_result< T > result, char const * wanted ) {
      T value;
      if ( auto const error = std::move( result ).get( value ) ) {
         failKind( error, wanted );
      }
      return value;
   }
   [[noreturn]] void failKind( simdjson::error_code error, char const * wanted );
   void check( simdjson::error_code error ) {
      if ( error ) {
         failSyntax( *source_, error );
      }
   }
   // The key as it stands, or with its escapes resolved.
   std::string_view key( simdjson::ondemand::field & field );
   // The value's text in the file, for an error.
   std::string rawText();

   JsonSource const * source_;
   simdjson::ondemand::value value_;
   Place const * place_;
};

// Reads a file as one document and calls the action with its root.
template< typename Action >
void readJson( std::string const & path, Action const & action );

// The text in quotes, control characters escaped.
std::string quoted( std::string_view text );

template< typename... Actions >
void JsonValue::object( Member< Actions > const &... members ) {
   static_assert( sizeof...( members ) < 32 );
   simdjson::ondemand::object object = get( value_.get_object(), "an object" );
   uint32_t seen = 0;
   for ( auto field : object ) {
      check( field.error() );
      std::string_view const name = key( field.value_unsafe() );
      Place const place{ place_, name };
      JsonValue value( *source_, field.value_unsafe().value(), place );
      uint32_t bit = 1;
      auto const read = [&]( auto const & member ) {
         uint32_t const own = std::exchange( bit, bit << 1 );
         if ( member.name != name ) {
            return false;
         }
         if ( seen & own ) {
            value.fail( "given twice" );
         }
         seen |= own;
         member.action( value );
         return true;
      };
      if ( !( read( members ) || ... ) ) {
         value.fail( "unknown member" );
      }
   }
   uint32_t bit = 1;
   auto const present = [&]( auto const & member ) {
      if ( member.isRequired && !( seen & bit ) ) {
         fail( "the member " + quoted( member.name ) + " is missing" );
      }
      bit <<= 1;
   };
   ( present( members ), ... );
}

template< typename Action >
void JsonValue::map( Action const & action ) {
   simdjson::ondemand::object object = get( value_.get_object(), "an object" );
   for ( auto field : object ) {
      check( field.error() );
      std::string_view const name = key( field.value_unsafe() );
      Place const place{ place_, name };
      action( name, JsonValue( *source_, field.value_unsafe().value(), place ) );
   }
}

template< typename Action >
void JsonValue::list( Action const & action ) {
   simdjson::ondemand::array array = get( value_.get_array(), "a list" );
   Place place{ place_, {}, 0, true };
   for ( auto element : array ) {
      check( element.error() );
      action( JsonValue( *source_, element.value_unsafe(), place ) );
      ++place.index;
   }
}

template< typename Action >
void readJson( std::string const & path, Action const & action ) {
   InputFile const file( path );
   JsonSource const source{ path, file };
   // The parser takes about six times the text, most of it never touched; what is built from it,
   // four.
   expectAllocations( file.text().size() * 10 );
   simdjson::ondemand::parser parser;
   simdjson::ondemand::document document;
   auto const text =
      simdjson::padded_string_view( file.text().data(), file.text().size(), file.capacity() );
   if ( auto const error = parser.iterate( text ).get( document ) ) {
      failSyntax( source, error );
   }
   simdjson::ondemand::value root;
   if ( auto const error = document.get_value().get( root ) ) {
      failSyntax( source, error );
   }
   Place const place;
   action( JsonValue( source, root, place ) );
   char const * rest = nullptr;
   if ( !document.current_location().get( rest ) ) {
      failSyntax( source, simdjson::TRAILING_CONTENT );
   }
}

} // namespace tpcli
