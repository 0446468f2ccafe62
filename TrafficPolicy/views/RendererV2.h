// The renderer contract: the operations that every view writes through, and their exact bytes.
//
// Text operations with an underscore-less name test the format themselves and write nothing in
// JSON, and the other way round, so that a view may call both unconditionally; writeString and the
// operations that begin with an underscore leave the test to the caller.
//
// JSON state is one flag: set when the next member is the first of its container and takes no
// comma. Nesting is not checked: whoever opens a container closes it.

#pragma once

#include "TrafficPolicy/platform/values/Decimal.h"
#include "TrafficPolicy/platform/values/IpGenPrefix.h"
#include "TrafficPolicy/platform/vorn/String.h"
#include "TrafficPolicy/platform/wendo/JsonEscape.h"
#include "TrafficPolicy/platform/wendo/Renderer.h"
#include "TrafficPolicy/views/JsonKey.h"

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace wendo {

// A text in a field of at least this width, filled with spaces; a longer text is never cut.
struct JustifyLeft {
   std::string_view text;
   unsigned width;
};

// Spaces at the beginning of a line.
constexpr JustifyLeft indentation( unsigned width ) {
   return { "", width };
}

class RendererV2 : public Renderer {
public:
   RendererV2( OutputFormat_t format, PrintBuffer & buffer )
      : Renderer( format, buffer ) {}

   // Text: the caller has tested for it.

   // A literal: its length is known, so it is copied without a call.
   template< size_t size >
   void writeString( char const ( &literal )[size] ) {
      char * to = buffer().getBuffer( size );
      std::memcpy( to, literal, size - 1 );
      buffer().commit( to + size - 1 );
   }
   void writeString( char const * text, size_t size ) { buffer().append( { text, size } ); }
   void writeString( std::string_view text ) { buffer().append( text ); }
   void writeString( Vorn::String const & text ) {
      if ( text.size() > wordsMax ) {
         buffer().append( text.view() );
      } else {
         buffer().commit( copyWords( buffer().getBuffer( wordsMax ), text ) );
      }
   }
   void writeString( JustifyLeft const & field ) {
      writeString( field.text );
      writeSpaces( field.width - std::min< size_t >( field.width, field.text.size() ) );
   }
   // In decimal.
   template< std::unsigned_integral Number >
   void writeString( Number value ) {
      writeNumber( value );
   }
   void writeString( Pelx::IpGenPrefix const & prefix ) {
      char * to = buffer().getBuffer( Pelx::IpGenPrefix::printRoom );
      buffer().commit( prefix.printToBuffer( to ) );
   }
   template< typename Value >
   void _addText( std::string_view label, Value const & value ) {
      writeString( label );
      writeString( value );
   }

   // Text: tested here.

   void eol() {
      if ( isText() ) {
         char * to = buffer().getBuffer( 1 );
         *to = '\n';
         buffer().commit( to + 1 );
      }
   }
   void addFrill( std::string_view text ) {
      if ( isText() ) {
         writeString( text );
      }
   }
   template< typename Value >
   void addText( std::string_view label, Value const & value ) {
      if ( isText() ) {
         _addText( label, value );
      }
   }

   // JSON: the caller has tested for it. A key is a JsonKey or a Vorn::String.

   void writeQuotedString( std::string_view text ) { appendEscaped( buffer(), text ); }
   void writeJsonValue( std::string_view text ) {
      writeString( "\"" );
      writeQuotedString( text );
      writeString( "\"" );
   }
   void writeJsonValue( Vorn::String const & text ) {
      if ( text.plain() && text.size() <= wordsMax - 2 ) {
         char * to = buffer().getBuffer( wordsMax + 2 );
         *to = '"';
         to = copyWords( to + 1, text );
         *to = '"';
         buffer().commit( to + 1 );
      } else {
         writeJsonValue( text.view() );
      }
   }

   // A member; with the empty key a list element.
   template< typename Key, typename Value >
   void _addJsonKeyValuePair( Key const & key, Value const & value ) {
      writeMemberName( key );
      writeMemberValue( value );
   }
   template< typename Key >
   void _startJsonObject( Key const & key ) {
      writeContainerName( key );
      open( '{' );
   }
   template< typename Key >
   void _startJsonList( Key const & key ) {
      writeContainerName( key );
      open( '[' );
   }
   void _startJsonListEntry() {
      char * to = comma( buffer().getBuffer( 2 ) );
      *to = '{';
      buffer().commit( to + 1 );
      first_ = true;
   }
   // A list element {"low":L,"high":H}, in one reservation: most of a large reply are these.
   void _addJsonRangeEntry( uint32_t low, uint32_t high ) {
      char * to = comma( buffer().getBuffer( rangeRoom ) );
      buffer().commit( putRange( to, low, high ) );
      first_ = false;
   }
   // A member "key":{"low":L,"high":H}.
   void _addJsonRange( JsonKey const & key, uint32_t low, uint32_t high ) {
      char * to = comma( buffer().getBuffer( JsonKey::room + rangeRoom ) );
      to = putKey( to, key );
      buffer().commit( putRange( to, low, high ) );
      first_ = false;
   }

   // JSON: tested here.

   // The root object, and its end with the reply's newline.
   void startJsonRoot() {
      if ( isJson() ) {
         open( '{' );
      }
   }
   void endJsonRoot() {
      if ( isJson() ) {
         writeString( "}\n" );
      }
   }
   template< typename Key >
   void startJsonObject( Key const & key ) {
      if ( isJson() ) {
         _startJsonObject( key );
      }
   }
   template< typename Key >
   void startJsonList( Key const & key ) {
      if ( isJson() ) {
         _startJsonList( key );
      }
   }
   void startJsonListEntry() {
      if ( isJson() ) {
         _startJsonListEntry();
      }
   }
   template< typename Key, typename Value >
   void addJsonKeyValuePair( Key const & key, Value const & value ) {
      if ( isJson() ) {
         _addJsonKeyValuePair( key, value );
      }
   }
   void endJsonDict() { close( '}' ); }
   void endJsonList() { close( ']' ); }
   void endJsonListEntry() { close( '}' ); }

private:
   // Texts up to this size are copied in words, into a reservation of this size.
   static constexpr size_t wordsMax = 64;
   static constexpr size_t rangeRoom = 48;

   void writeSpaces( size_t count );

   template< typename Number >
   void writeNumber( Number value ) {
      char * to = buffer().getBuffer( Decimal::digitsMax );
      using Wide = std::conditional_t< ( sizeof( Number ) > 4 ), uint64_t, uint32_t >;
      buffer().commit( Decimal::put( to, Wide{ value } ) );
   }

   // Copies a text of at most wordsMax bytes and returns its end. Whole words are written.
   static char * copyWords( char * to, Vorn::String const & text ) {
      char const * from = text.data();
      size_t const size = text.size();
      for ( size_t at = 0; at < size; at += Vorn::String::padding ) {
         std::memcpy( to + at, from + at, Vorn::String::padding );
      }
      return to + size;
   }
   // The comma rule, without a branch: the byte is written in any case and kept if it is needed.
   char * comma( char * to ) const {
      *to = ',';
      return to + !first_;
   }
   static char * putKey( char * to, JsonKey const & key ) {
      std::memcpy( to, key.text(), JsonKey::room );
      return to + key.size();
   }
   static char * putRange( char * to, uint32_t low, uint32_t high ) {
      std::memcpy( to, "{\"low\":", 7 );
      to = Decimal::put( to + 7, low );
      std::memcpy( to, ",\"high\":", 8 );
      to = Decimal::put( to + 8, high );
      *to = '}';
      return to + 1;
   }

   void writeMemberName( JsonKey const & key ) {
      char * to = comma( buffer().getBuffer( JsonKey::room + 1 ) );
      buffer().commit( key.empty() ? to : putKey( to, key ) );
      first_ = false;
   }
   void writeMemberName( Vorn::String const & key ) {
      buffer().commit( comma( buffer().getBuffer( 1 ) ) );
      if ( !key.empty() ) {
         writeJsonValue( key );
         writeString( ":" );
      }
      first_ = false;
   }
   void writeContainerName( JsonKey const & key ) {
      char * to = comma( buffer().getBuffer( JsonKey::room + 1 ) );
      buffer().commit( putKey( to, key ) );
   }
   void writeContainerName( Vorn::String const & key ) {
      buffer().commit( comma( buffer().getBuffer( 1 ) ) );
      writeJsonValue( key );
      writeString( ":" );
   }

   // The shortest digits that read back as the same number.
   void writeMemberValue( double value ) {
      char * to = buffer().getBuffer( 32 );
      buffer().commit( std::to_chars( to, to + 32, value ).ptr );
   }
   void writeMemberValue( Vorn::String const & text ) { writeJsonValue( text ); }
   void writeMemberValue( std::string_view text ) { writeJsonValue( text ); }
   void writeMemberValue( bool value ) {
      if ( value ) {
         writeString( "true" );
      } else {
         writeString( "false" );
      }
   }
   template< std::unsigned_integral Number >
   void writeMemberValue( Number value ) {
      writeNumber( value );
   }
   void writeMemberValue( Pelx::IpGenPrefix const & prefix ) {
      char * to = buffer().getBuffer( Pelx::IpGenPrefix::printRoom + 2 );
      *to = '"';
      to = prefix.printToBuffer( to + 1 );
      *to = '"';
      buffer().commit( to + 1 );
   }

   void open( char bracket ) {
      char * to = buffer().getBuffer( 1 );
      *to = bracket;
      buffer().commit( to + 1 );
      first_ = true;
   }
   void close( char bracket ) {
      if ( isJson() ) {
         char * to = buffer().getBuffer( 1 );
         *to = bracket;
         buffer().commit( to + 1 );
         first_ = false;
      }
   }

   bool first_ = false;
};

} // namespace wendo
