// Strict reading of a JSON document, straight from the parser into whatever the caller builds.
//
// The caller says which members an object has and what to do with each; everything else is an error
// that names the file and the place:
//
//    value.object( required( "rate", [ & ]( JsonValue v ) { rate = v.number( ... ); } ),
//                  optional( "unit", [ & ]( JsonValue v ) { unit = ...; } ) );

#pragma once

#include "sources/json/JsonText.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tpcli {

// Where in the document a value stands. A chain on the stack: it costs nothing until it is printed.
struct Place {
   Place const * parent = nullptr;
   std::string_view name{};
   size_t index = 0; // when there is no name: in a list
   bool isElement = false;
   JsonText::Position position{}; // of the value

   // As a JSON pointer (RFC 6901), control characters escaped so that it stays one line.
   std::string pointer() const;
};

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

// A value that is about to be read, once, before anything behind it. Errors throw FileError.
class JsonValue {
public:
   JsonValue( JsonText & text, Place const & place )
      : text_( &text )
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
   uint64_t number( std::string_view what, uint64_t maximum = ~uint64_t{ 0 } ) {
      uint64_t number = 0;
      text_->next();
      if ( text_->smallNumber( number, maximum ) ) [[likely]] {
         return number;
      }
      return anyNumber( what, maximum );
   }
   double real();
   // Any number, as it is written; valid until the next value is read.
   std::string_view numberText();
   bool boolean();
   // A string; valid until anything else is read.
   std::string_view string() {
      if ( text_->next() != '"' ) [[unlikely]] {
         failKind( "a string" );
      }
      return text_->string();
   }
   // A string that is not empty.
   std::string_view name( std::string_view what );
   // True, and the value is read, when it is null.
   bool null();

   JsonType type() { return text_->type(); }
   bool isObject() { return text_->next() == '{'; }
   bool isString() { return text_->next() == '"'; }
   bool isNumber() { return type() == JsonType::number; }
   bool isList() { return text_->next() == '['; }
   bool isBoolean() { return type() == JsonType::boolean; }

   // Where the value begins.
   JsonText::Position position() const { return place_->position; }

   // The error of this value.
   [[noreturn]] void fail( std::string const & message ) const;
   // The error of an element of this list, which was read; the element began there.
   [[noreturn]] void failElement( size_t index, JsonText::Position position,
                                  std::string const & message ) const;

private:
   // The error of a value, not yet read, that is of another kind than wanted.
   [[noreturn]] void failKind( char const * wanted );
   // The error of a member with this name, which was read.
   [[noreturn]] void failUnknown( std::string_view name );
   uint64_t anyNumber( std::string_view what, uint64_t maximum );
   // The value as it is written, for an error.
   std::string rawText();
   // Enters a container, which begins with the bracket.
   void enter( char bracket, char const * wanted ) {
      if ( text_->next() != bracket ) [[unlikely]] {
         failKind( wanted );
      }
      text_->take();
   }

   JsonText * text_;
   Place const * place_;
};

// Reads a file as one document and calls the action with its root.
template< typename Action >
void readJson( InputFile & file, Action const & action );

// The text in quotes, control characters escaped.
std::string quoted( std::string_view text );

template< typename... Actions >
void JsonValue::object( Member< Actions > const &... members ) {
   static_assert( sizeof...( members ) <= 32 );
   enter( '{', "an object" );
   uint32_t seen = 0; // a bit for each member
   Place place{ .parent = place_ };
   JsonValue value( *text_, place );
   for ( bool isFirst = true; text_->member( isFirst ); isFirst = false ) {
      std::string_view const name = text_->string();
      uint32_t found = 1;
      auto const isNamed = [&]( auto const & member ) {
         if ( member.name != name ) {
            found <<= 1;
            return false;
         }
         place.name = member.name; // it outlives the text that it is found by
         return true;
      };
      if ( !( isNamed( members ) || ... ) ) {
         failUnknown( name );
      }
      place.position = text_->memberValue();
      if ( seen & found ) {
         value.fail( "given twice" );
      }
      seen |= found;
      uint32_t bit = 1;
      auto const read = [&]( auto const & member ) {
         if ( bit == found ) {
            member.action( value );
         }
         bit <<= 1;
      };
      ( read( members ), ... );
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
   enter( '{', "an object" );
   std::string name;
   for ( bool isFirst = true; text_->member( isFirst ); isFirst = false ) {
      name = text_->string();
      Place const place{ .parent = place_, .name = name, .position = text_->memberValue() };
      action( std::string_view( name ), JsonValue( *text_, place ) );
   }
}

template< typename Action >
void JsonValue::list( Action const & action ) {
   enter( '[', "a list" );
   Place place{ .parent = place_, .isElement = true };
   for ( ; text_->element( place.index == 0 ); ++place.index ) {
      place.position = text_->position();
      action( JsonValue( *text_, place ) );
   }
}

template< typename Action >
void readJson( InputFile & file, Action const & action ) {
   JsonText text( file );
   Place const place{ .position = text.position() };
   JsonValue root( text, place );
   if ( root.isObject() || root.isList() ) {
      action( root );
      text.end();
   } else {
      text.skip();
      text.end();
      root.fail( "the document is not an object" );
   }
}

} // namespace tpcli
