// The renderer contract: the operations that every view writes through, and their exact bytes.
//
// Operations test the format themselves: those for text write nothing in JSON, and the other way
// round, so that a view calls both unconditionally. write, writeString, writeQuotedString,
// writeJsonValue and the operations that begin with an underscore leave the test to the caller.
//
// JSON containers are opened as scopes, which close themselves:
//
//    auto const policy = renderer.object( state.name() );
//    auto const rules = renderer.list( rulesKey );
//
// A key is a JsonKey, a Vorn::String or anything that converts to std::string_view; with an empty
// key a member is a list element. The renderer's only state is the prefix of the next member:
// brackets of scopes that ended, and a comma unless it is the first of its container.

#pragma once

#include "TrafficPolicy/platform/wendo/JsonEscape.h"
#include "TrafficPolicy/platform/wendo/JsonKey.h"
#include "TrafficPolicy/platform/wendo/Pieces.h"
#include "TrafficPolicy/platform/wendo/Renderer.h"

#include <concepts>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

namespace wendo {

class RendererV2;

// Literals, characters pointed to, and the strings of the standard library.
template< typename Value >
concept StandardText =
   std::convertible_to< Value const &, std::string_view > && !std::same_as< Value, std::nullptr_t >;

// An open object, list or list entry of a JSON reply; nothing in text. Its destructor writes
// nothing: it leaves the bracket to the renderer, which writes it before the next member or the
// root's end. So closing takes no reservation and cannot throw, and an exception that leaves the
// view cuts the reply where it was, without brackets that would make it look complete.
// Must not outlive the renderer.
class [[nodiscard]] JsonScope {
public:
   JsonScope( JsonScope const & ) = delete;
   JsonScope & operator=( JsonScope const & ) = delete;
   inline ~JsonScope();

private:
   friend class RendererV2;
   JsonScope( RendererV2 * renderer, char bracket )
      : renderer_( renderer )
      , bracket_( bracket ) {}

   RendererV2 * renderer_; // null in text
   char bracket_;
};

// The buffer outlives the renderer; a kilobyte has room for the pieces of one operation.
class RendererV2 : public Renderer {
public:
   RendererV2( OutputFormat_t format, PrintBuffer & buffer )
      : Renderer( format, buffer ) {}

   // Text: the caller has tested the format.

   // The pieces, concatenated (see Pieces.h).
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
      write( textPiece( value ) );
   }
   void writeString( char const * text, size_t size ) { buffer().append( { text, size } ); }
   template< typename Value >
   void _addText( std::string_view label, Value const & value ) {
      write( label, textPiece( value ) );
   }

   // Text: nothing in JSON.

   // The pieces as text.
   template< typename... Pieces >
   [[gnu::always_inline]] void text( Pieces const &... pieces ) {
      if ( isText() ) {
         write( pieces... );
      }
   }
   void eol() { text( '\n' ); }
   void addFrill( std::string_view frill ) { text( frill ); }
   template< typename Value >
   void addText( std::string_view label, Value const & value ) {
      if ( isText() ) {
         _addText( label, value );
      }
   }

   // JSON: the caller has tested the format.

   void writeQuotedString( std::string_view text ) {
      writeBrackets();
      appendEscaped( buffer(), text );
   }
   // In quotes, escaped: any text. Numbers and truth values as they are.
   template< typename Value >
   void writeJsonValue( Value const & value ) {
      writeBrackets();
      write( Json{ jsonPiece( value ) } );
   }

   // A member; with the empty key a list element.
   template< typename Key, typename Value >
   void _addJsonKeyValuePair( Key const & key, Value const & value ) {
      auto const & name = jsonPiece( key );
      if ( name.empty() ) {
         writeMember( Json{ jsonPiece( value ) } );
      } else {
         writeMember( JsonMember{ name, jsonPiece( value ) } );
      }
   }
   template< typename Key >
   void _startJsonObject( Key const & key ) {
      writeMember( JsonName{ jsonPiece( key ) }, '{' );
      prefix_.containerOpened();
   }
   template< typename Key >
   void _startJsonList( Key const & key ) {
      writeMember( JsonName{ jsonPiece( key ) }, '[' );
      prefix_.containerOpened();
   }
   void _startJsonListEntry() {
      writeMember( '{' );
      prefix_.containerOpened();
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
      auto const open = list( key );
      for ( ; at != end; ++at ) {
         writeMember( Json{ **at } );
      }
   }

   // JSON: nothing in text.

   // The root object, and its end with the reply's newline.
   void startJsonRoot() {
      if ( isJson() ) {
         write( '{' );
         prefix_.containerOpened();
      }
   }
   void endJsonRoot() {
      if ( isJson() ) {
         writeBrackets();
         write( "}\n" );
      }
   }
   template< typename Key >
   JsonScope object( Key const & key ) {
      startJsonObject( key );
      return scope( '}' );
   }
   template< typename Key >
   JsonScope list( Key const & key ) {
      startJsonList( key );
      return scope( ']' );
   }
   // An object in a list, with its first members.
   template< typename... Members >
   JsonScope listEntry( Members const &... members ) {
      if ( isJson() ) {
         _startJsonListEntry( members... );
      }
      return scope( '}' );
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
   // A whole object.
   template< typename Key, typename... Members >
   void addJsonObject( Key const & key, Members const &... members ) {
      if ( isJson() ) {
         _addJsonObject( key, members... );
      }
   }
   void endJsonDict() { close( '}' ); }
   void endJsonList() { close( ']' ); }
   void endJsonListEntry() { close( '}' ); }

private:
   friend class JsonScope;

   JsonScope scope( char bracket ) { return { isJson() ? this : nullptr, bracket }; }

   template< typename Value >
   static decltype( auto ) textPiece( Value const & value ) {
      if constexpr ( StandardText< Value > ) {
         return std::string_view( value );
      } else {
         return ( value );
      }
   }
   template< typename Value >
   static decltype( auto ) jsonPiece( Value const & value ) {
      if constexpr ( StandardText< Value > ) {
         return Vorn::String( std::string_view( value ) );
      } else {
         return ( value );
      }
   }

   // The comma rule, and the pieces of a member.
   template< typename... Pieces >
   [[gnu::always_inline]] void writeMember( Pieces const &... pieces ) {
      write( prefix_, pieces... );
      prefix_.memberWritten();
   }
   // The brackets of ended scopes, before what is not a member.
   void writeBrackets() {
      if ( prefix_.brackets() > 0 ) {
         char * const to = buffer().getBuffer( room( prefix_ ) );
         put( to, prefix_ );
         buffer().commit( to + prefix_.brackets() );
         prefix_.memberWritten();
      }
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
   void writeAlone( JsonName< Vorn::String > name ) {
      writeQuoted( name.key.view() );
      write( ':' );
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
         prefix_.scopeEnded( bracket );
         writeBrackets();
      }
   }

   MemberPrefix prefix_;
};

JsonScope::~JsonScope() {
   if ( renderer_ ) {
      renderer_->prefix_.scopeEnded( bracket_ );
   }
}

} // namespace wendo
