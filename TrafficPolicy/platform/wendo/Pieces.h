// The pieces that output is made of.
//
// Each kind of piece has two functions: room(), the bytes that it may write, and put(), which
// writes it and returns its end. A writer of several pieces adds up their room, reserves once, and
// hands the position from one put() to the next in a register. That is what makes large outputs
// fast: with a reservation for each piece, each would load the position from the buffer and store
// it again, and so wait for the one before.
//
// put() may write beyond the piece's end, up to its room, so that it copies in words without
// knowing the size. A piece that is too long, or has something to escape, has the room tooMuch:
// then the pieces are written one by one.

#pragma once

#include "TrafficPolicy/platform/records/Ranges.h"
#include "TrafficPolicy/platform/values/Decimal.h"
#include "TrafficPolicy/platform/values/IpGenPrefix.h"
#include "TrafficPolicy/platform/vorn/String.h"
#include "TrafficPolicy/platform/wendo/JsonKey.h"
#include "TrafficPolicy/platform/wendo/PlainText.h"

#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace wendo {

// The longest text of variable size that is written together with other pieces, and the room that
// it takes then: such texts are copied in words.
inline constexpr size_t wordsMax = 64;
// More room than any pieces written together need; at most what a view's buffer has.
inline constexpr size_t tooMuch = size_t{ 1 } << 20;

// A character.
constexpr size_t room( char ) {
   return 1;
}
inline char * put( char * to, char c ) {
   *to = c;
   return to + 1;
}

// A literal, without its terminator: its length is known, so it is copied without a call.
template< size_t size >
constexpr size_t room( char const ( & )[size] ) {
   return size - 1;
}
template< size_t size >
char * put( char * to, char const ( &literal )[size] ) {
   std::memcpy( to, literal, size - 1 );
   return to + size - 1;
}

constexpr size_t room( PlainText const & ) {
   return PlainText::room;
}
inline char * put( char * to, PlainText const & text ) {
   return text.printToBuffer( to );
}

// A number in decimal.
template< std::unsigned_integral Number >
constexpr size_t room( Number ) {
   return Decimal::digitsMax;
}
template< std::unsigned_integral Number >
char * put( char * to, Number value ) {
   using Wide = std::conditional_t< ( sizeof( Number ) > 4 ), uint64_t, uint32_t >;
   return Decimal::put( to, Wide{ value } );
}

// The shortest digits that read back as the same number.
constexpr size_t room( double ) {
   return 32;
}
inline char * put( char * to, double value ) {
   return std::to_chars( to, to + room( value ), value ).ptr;
}

constexpr size_t room( Pelx::IpGenPrefix const & ) {
   return Pelx::IpGenPrefix::printRoom;
}
inline char * put( char * to, Pelx::IpGenPrefix const & prefix ) {
   return prefix.printToBuffer( to );
}

// A text, unescaped.
inline size_t room( Vorn::String const & text ) {
   return text.size() <= wordsMax ? wordsMax : tooMuch;
}
inline char * put( char * to, Vorn::String const & text ) {
   char const * from = text.data();
   size_t const size = text.size();
   for ( size_t at = 0; at < size; at += Vorn::String::padding ) {
      std::memcpy( to + at, from + at, Vorn::String::padding );
   }
   return to + size;
}
inline size_t room( std::string_view text ) {
   return text.size() <= wordsMax ? text.size() : tooMuch;
}
inline char * put( char * to, std::string_view text ) {
   return to + text.copy( to, text.size() );
}

// Spaces, mostly at the beginning of a line.
struct Spaces {
   unsigned width;
};
constexpr Spaces indentation( unsigned width ) {
   return { width };
}
constexpr size_t room( Spaces spaces ) {
   return spaces.width <= wordsMax ? wordsMax : tooMuch;
}
inline char * put( char * to, Spaces spaces ) {
   for ( unsigned at = 0; at < spaces.width; at += 16 ) {
      std::memcpy( to + at, "                ", 16 );
   }
   return to + spaces.width;
}

// A text in a field of at least this width, filled with spaces; a longer text is never cut.
struct JustifyLeft {
   std::string_view text;
   unsigned width;

   constexpr Spaces filling() const {
      return { text.size() < width ? width - static_cast< unsigned >( text.size() ) : 0 };
   }
};
inline size_t room( JustifyLeft const & field ) {
   return room( field.text ) + room( field.filling() );
}
inline char * put( char * to, JustifyLeft const & field ) {
   return put( put( to, field.text ), field.filling() );
}

// The indentation and the heading of a line.
struct LineBegin {
   Spaces indent;
   PlainText const & heading;
};
constexpr size_t room( LineBegin line ) {
   return room( line.indent ) + PlainText::room;
}
inline char * put( char * to, LineBegin line ) {
   return put( put( to, line.indent ), line.heading );
}

// What comes before the next JSON member: the brackets of scopes that ended since the last one,
// innermost first, and a comma unless the member is the first of its container.
class MemberPrefix {
public:
   static constexpr size_t room = 16;

   // A member was written.
   void memberWritten() {
      text_[0] = ',';
      size_ = 1;
   }
   // A container was opened: its first member takes no comma.
   void containerOpened() { size_ = 0; }
   // A scope ended.
   void scopeEnded( char bracket ) {
      unsigned const at = brackets();
      VORN_ASSERT( at + 2 <= room );
      text_[at] = bracket;
      text_[at + 1] = ',';
      size_ = at + 2;
   }

   // How many bytes there are without the comma.
   unsigned brackets() const { return size_ - ( size_ != 0 ); }
   char * printToBuffer( char * to ) const {
      unsigned const size = size_;
      if ( size <= 1 ) [[likely]] {
         *to = ','; // kept if it is needed
         return to + size;
      }
      // Byte by byte, as they were written: a wide load would wait for their stores.
      for ( unsigned at = 0; at < size; ++at ) {
         to[at] = text_[at];
      }
      return to + size;
   }

private:
   char text_[room] = { ',' };
   unsigned size_ = 1;
};
constexpr size_t room( MemberPrefix const & ) {
   return MemberPrefix::room;
}
inline char * put( char * to, MemberPrefix const & prefix ) {
   return prefix.printToBuffer( to );
}

// A value in its JSON form.
template< typename Value >
struct Json {
   Value const & value;
};
template< typename Value >
Json( Value const & ) -> Json< Value >;

template< typename Value >
   requires std::unsigned_integral< Value > || std::same_as< Value, double >
constexpr size_t room( Json< Value > json ) {
   return room( json.value );
}
template< typename Value >
   requires std::unsigned_integral< Value > || std::same_as< Value, double >
char * put( char * to, Json< Value > json ) {
   return put( to, json.value );
}

constexpr size_t room( Json< bool > ) {
   return PlainText::room;
}
inline char * put( char * to, Json< bool > json ) {
   static constexpr PlainText names[] = { "false", "true" };
   return put( to, names[json.value] );
}

constexpr size_t room( Json< std::nullptr_t > ) {
   return 4;
}
inline char * put( char * to, Json< std::nullptr_t > ) {
   return put( to, "null" );
}

// Quoted, without anything to escape.
template< typename Value >
concept Text = std::same_as< Value, PlainText > || std::same_as<
   Value, Pelx::IpGenPrefix > || std::same_as< Value, Vorn::String >;
template< Text Value >
constexpr size_t room( Json< Value > json ) {
   return room( json.value ) + 2;
}
inline size_t room( Json< Vorn::String > json ) {
   return json.value.plain() ? room( json.value ) + 2 : tooMuch;
}
template< Text Value >
char * put( char * to, Json< Value > json ) {
   return put( put( put( to, '"' ), json.value ), '"' );
}

// {"low":L,"high":H}
template< std::derived_from< Classification::NumericalRange > Range >
constexpr size_t room( Json< Range > ) {
   return 2 * Decimal::digitsMax + 16;
}
template< std::derived_from< Classification::NumericalRange > Range >
char * put( char * to, Json< Range > json ) {
   to = put( to, "{\"low\":" );
   to = Decimal::put( to, json.value.low );
   to = put( to, ",\"high\":" );
   to = Decimal::put( to, json.value.high );
   return put( to, '}' );
}

// A member's name with its colon. A key is a JsonKey or a Vorn::String.
template< typename Key >
struct JsonName {
   Key const & key;
};
template< typename Key >
JsonName( Key const & ) -> JsonName< Key >;

constexpr size_t room( JsonName< JsonKey > ) {
   return JsonKey::room;
}
inline char * put( char * to, JsonName< JsonKey > name ) {
   return PlainText::copyBlock( to, name.key.text(), name.key.size() );
}
inline size_t room( JsonName< Vorn::String > name ) {
   return room( Json{ name.key } ) + 1;
}
inline char * put( char * to, JsonName< Vorn::String > name ) {
   return put( put( to, Json{ name.key } ), ':' );
}

// A member.
template< typename Key, typename Value >
struct JsonMember {
   Key const & key;
   Value const & value;
};
template< typename Key, typename Value >
JsonMember( Key const &, Value const & ) -> JsonMember< Key, Value >;

template< typename Key, typename Value >
constexpr size_t room( JsonMember< Key, Value > const & member ) {
   return room( JsonName{ member.key } ) + room( Json{ member.value } );
}
template< typename Key, typename Value >
char * put( char * to, JsonMember< Key, Value > const & member ) {
   return put( put( to, JsonName{ member.key } ), Json{ member.value } );
}

// A member that is not the first.
template< typename Member >
struct Following {
   Member const & member;
};
template< typename Member >
Following( Member const & ) -> Following< Member >;

template< typename Member >
constexpr size_t room( Following< Member > following ) {
   return 1 + room( following.member );
}
template< typename Member >
char * put( char * to, Following< Member > following ) {
   return put( put( to, ',' ), following.member );
}

} // namespace wendo
