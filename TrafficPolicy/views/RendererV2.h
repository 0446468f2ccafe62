// The renderer contract: the operations that every view writes through, and their exact bytes.
//
// Text operations with an underscore-less name test the format themselves and write nothing in
// JSON, and the other way round, so that a view may call both unconditionally; write, writeString
// and the operations that begin with an underscore leave the test to the caller.
//
// JSON state is one flag: set when the next member is the first of its container and takes no
// comma. Nesting is not checked: whoever opens a container closes it.

#pragma once

#include "TrafficPolicy/platform/wendo/JsonEscape.h"
#include "TrafficPolicy/platform/wendo/Renderer.h"
#include "TrafficPolicy/views/JsonKey.h"
#include "TrafficPolicy/views/Pieces.h"

#include <algorithm>
#include <concepts>
#include <string_view>
#include <type_traits>

namespace wendo {

// The buffer needs the room of the pieces that one operation writes: a kilobyte will do.
class RendererV2 : public Renderer {
public:
   RendererV2( OutputFormat_t format, PrintBuffer & buffer )
      : Renderer( format, buffer ) {}

   // Text: the caller has tested for it.

   // The pieces, one behind the other (see Pieces.h).
   template< typename... Pieces >
   [[gnu::always_inline]] void write( Pieces const &... pieces ) {
      size_t const needed = ( room( pieces ) + ... );
      if ( needed < tooMuch ) [[likely]] {
         char * to = buffer().getBuffer( needed );
         ( ( to = put( to, pieces ) ), ... );
         buffer().commit( to );
      } else {
         writeApart( pieces... );
      }
   }
   template< typename Value >
   void writeString( Value const & value ) {
      write( value );
   }
   void writeString( char const * text, size_t size ) { buffer().append( { text, size } ); }
   template< typename Value >
   void _addText( std::string_view label, Value const & value ) {
      write( label, value );
   }

   // Text: tested here.

   void eol() {
      if ( isText() ) {
         write( '\n' );
      }
   }
   void addFrill( std::string_view text ) {
      if ( isText() ) {
         write( text );
      }
   }
   template< typename Value >
   void addText( std::string_view label, Value const & value ) {
      if ( isText() ) {
         _addText( label, value );
      }
   }

   // JSON: the caller has tested for it.

   void writeQuotedString( std::string_view text ) { appendEscaped( buffer(), text ); }
   template< typename Value >
   void writeJsonValue( Value const & value ) {
      write( Json{ value } );
   }
   void writeJsonValue( std::string_view text ) { writeQuoted( text ); }

   // A member; with the empty key a list element.
   template< typename Key, typename Value >
   void _addJsonKeyValuePair( Key const & key, Value const & value ) {
      if ( key.empty() ) {
         writeMember( Json{ value } );
      } else {
         writeMember( JsonMember{ key, value } );
      }
   }
   template< typename Key >
   void _addJsonKeyValuePair( Key const & key, std::string_view value ) {
      _addJsonKeyValuePair( key, Vorn::String( value ) );
   }
   template< typename Key >
   void _startJsonObject( Key const & key ) {
      writeMember( JsonName{ key }, '{' );
      first_ = true;
   }
   template< typename Key >
   void _startJsonList( Key const & key ) {
      writeMember( JsonName{ key }, '[' );
      first_ = true;
   }
   void _startJsonListEntry() {
      writeMember( '{' );
      first_ = true;
   }
   // An object in a list, with its first members.
   template< typename First, typename... Others >
   void _startJsonListEntry( First const & member, Others const &... others ) {
      writeMember( '{', member, Following{ others }... );
   }
   // A whole object in a list.
   template< typename First, typename... Others >
   void _addJsonListEntry( First const & member, Others const &... others ) {
      writeMember( '{', member, Following{ others }..., '}' );
   }
   // A whole object.
   template< typename Key, typename First, typename... Others >
   void _addJsonObject( Key const & key, First const & member, Others const &... others ) {
      writeMember( JsonName{ key }, '{', member, Following{ others }..., '}' );
   }
   // A whole list; the elements are given as pointers.
   template< typename Elements >
   void _addJsonList( JsonKey const & key, Elements const & elements ) {
      auto at = elements.begin();
      auto const end = elements.end();
      if ( end - at == 1 ) [[likely]] {
         writeMember( JsonName{ key }, '[', Json{ **at }, ']' );
         return;
      }
      _startJsonList( key );
      for ( ; at != end; ++at ) {
         writeMember( Json{ **at } );
      }
      endJsonList();
   }

   // JSON: tested here.

   // The root object, and its end with the reply's newline.
   void startJsonRoot() {
      if ( isJson() ) {
         write( '{' );
         first_ = true;
      }
   }
   void endJsonRoot() {
      if ( isJson() ) {
         write( "}\n" );
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
   // The comma rule, and the pieces of a member.
   template< typename... Pieces >
   [[gnu::always_inline]] void writeMember( Pieces const &... pieces ) {
      write( Comma{ !first_ }, pieces... );
      first_ = false;
   }

   // Pieces that are too long for one reservation, or have something to escape.
   template< typename... Pieces >
   [[gnu::noinline, gnu::cold]] void writeApart( Pieces const &... pieces ) {
      ( writeAlone( pieces ), ... );
   }
   template< typename Piece >
      requires( std::is_array_v< Piece > || !std::convertible_to< Piece, std::string_view > )
   void writeAlone( Piece const & piece ) {
      buffer().commit( put( buffer().getBuffer( room( piece ) ), piece ) );
   }
   void writeAlone( Vorn::String const & text ) { buffer().append( text.view() ); }
   void writeAlone( std::string_view text ) { buffer().append( text ); }
   void writeAlone( Spaces spaces );
   void writeAlone( JustifyLeft const & field ) {
      writeAlone( field.text );
      writeAlone( field.filling() );
   }
   void writeAlone( LineBegin line ) {
      writeAlone( line.indent );
      write( line.heading );
   }
   void writeAlone( Json< Vorn::String > text ) { writeQuoted( text.value.view() ); }
   template< typename Key >
   void writeAlone( JsonName< Key > name ) {
      if constexpr ( std::is_same_v< Key, JsonKey > ) {
         write( name );
      } else {
         writeQuoted( name.key.view() );
         write( ':' );
      }
   }
   template< typename Key, typename Value >
   void writeAlone( JsonMember< Key, Value > const & member ) {
      writeAlone( JsonName{ member.key } );
      writeAlone( Json{ member.value } );
   }
   template< typename Member >
   void writeAlone( Following< Member > following ) {
      write( ',' );
      writeAlone( following.member );
   }
   void writeQuoted( std::string_view text ) {
      write( '"' );
      appendEscaped( buffer(), text );
      write( '"' );
   }

   void close( char bracket ) {
      if ( isJson() ) {
         write( bracket );
         first_ = false;
      }
   }

   bool first_ = false;
};

} // namespace wendo
