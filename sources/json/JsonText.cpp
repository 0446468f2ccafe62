#include "sources/json/JsonText.h"

#include "sources/FileError.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

namespace tpcli {

namespace {

constexpr char badEncoding[] = "Invalid encoding in string.";
constexpr char badEscape[] = "Invalid escape character in string.";
constexpr char badSurrogates[] = "The surrogate pair in string is invalid.";
constexpr char badValue[] = "Invalid value.";

bool isBetween( unsigned char byte, unsigned char low, unsigned char high ) {
   return low <= byte && byte <= high;
}

// Whether a number or a word ends before it.
bool isEnd( char c ) {
   auto const byte = static_cast< unsigned char >( c );
   return !isBetween( byte, '0', '9' ) && !isBetween( byte & 0xdf, 'A', 'Z' )
          && std::string_view( "+-." ).find( c ) == std::string_view::npos;
}

// The bytes of the character that is not ASCII, or 0 where it is no UTF-8. The text ends with
// zeros.
size_t sizeOfMultiByte( char const * text ) {
   auto const byte = [text]( size_t at ) { return static_cast< unsigned char >( text[at] ); };
   auto const follows = [&]( size_t at ) { return isBetween( byte( at ), 0x80, 0xbf ); };
   unsigned char const lead = byte( 0 );
   if ( isBetween( lead, 0xc2, 0xdf ) ) {
      return follows( 1 ) ? 2 : 0;
   }
   // No overlong form, no surrogate, nothing above U+10FFFF.
   bool const second = isBetween( byte( 1 ),
                                  lead == 0xe0   ? 0xa0
                                  : lead == 0xf0 ? 0x90
                                                 : 0x80,
                                  lead == 0xed   ? 0x9f
                                  : lead == 0xf4 ? 0x8f
                                                 : 0xbf );
   if ( isBetween( lead, 0xe0, 0xef ) ) {
      return second && follows( 2 ) ? 3 : 0;
   }
   return isBetween( lead, 0xf0, 0xf4 ) && second && follows( 2 ) && follows( 3 ) ? 4 : 0;
}

void appendUtf8( std::string & text, unsigned code ) {
   auto const put = [&text]( unsigned byte ) { text += static_cast< char >( byte ); };
   auto const follow = [&]( unsigned shift ) { put( 0x80 | ( code >> shift & 0x3f ) ); };
   if ( code < 0x80 ) {
      put( code );
   } else if ( code < 0x800 ) {
      put( 0xc0 | code >> 6 );
      follow( 0 );
   } else if ( code < 0x10000 ) {
      put( 0xe0 | code >> 12 );
      follow( 6 );
      follow( 0 );
   } else {
      put( 0xf0 | code >> 18 );
      follow( 12 );
      follow( 6 );
      follow( 0 );
   }
}

// Whether the number has no double near it.
bool isTooBig( std::string_view number ) {
   if ( number.size() <= std::numeric_limits< double >::max_exponent10
        && number.find_first_of( "eE" ) == number.npos ) {
      return false;
   }
   static ::locale_t const plain = ::newlocale( LC_ALL_MASK, "C", nullptr );
   return std::isinf( ::strtod_l( std::string( number ).c_str(), nullptr, plain ) );
}

} // namespace

JsonText::JsonText( InputFile & file )
   : file_( file )
   , at_( file.begin() ) {
   have( 3 );
   if ( std::string_view( at_, 3 ) == "\xef\xbb\xbf" ) {
      fail( "A byte order mark, which JSON does not have." );
   }
   if ( std::string_view( "\0]},:", 5 ).find( next() ) != std::string_view::npos ) {
      fail( "The document is empty." );
   }
}

void JsonText::fail( char const * message, size_t behind ) {
   throw FileError( name(), message, { {}, line_, column( at_ + behind ) } );
}

bool JsonText::more() {
   columnBase_ = column( at_ );
   bool const hasMore = file_.advance( at_ );
   at_ = file_.begin();
   return hasMore;
}

void JsonText::have( size_t bytes ) {
   while ( static_cast< size_t >( file_.end() - at_ ) < bytes && more() ) {
   }
}

char JsonText::peek( size_t behind ) {
   have( behind + 1 );
   return at_[behind];
}

char JsonText::skipSpace() {
   for ( ;; ) {
      switch ( *at_ ) {
      case '\n':
         ++line_;
         columnBase_ = static_cast< size_t >( file_.begin() - at_ );
         [[fallthrough]];
      case ' ':
      case '\t':
      case '\r':
         ++at_;
         break;
      case '\0':
         if ( at_ == file_.end() && more() ) {
            break;
         }
         return '\0';
      default:
         return *at_;
      }
   }
}

JsonType JsonText::type() {
   switch ( next() ) {
   case '{':
      return JsonType::object;
   case '[':
      return JsonType::list;
   case '"':
      return JsonType::string;
   case 't':
   case 'f':
      return JsonType::boolean;
   case 'n':
      return JsonType::null;
   case '-':
      return JsonType::number;
   default:
      if ( isBetween( static_cast< unsigned char >( *at_ ), '0', '9' ) ) {
         return JsonType::number;
      }
      fail( badValue );
   }
}

bool JsonText::anyElement( bool isFirst ) {
   char const c = next();
   if ( c == ']' ) {
      take();
      return false;
   }
   if ( !isFirst ) {
      if ( c != ',' ) {
         fail( "Missing a comma or ']' after an array element." );
      }
      take();
      next();
   }
   return true;
}

bool JsonText::anyMember( bool isFirst ) {
   char c = next();
   if ( c == '}' ) {
      take();
      return false;
   }
   if ( !isFirst ) {
      if ( c != ',' ) {
         fail( "Missing a comma or '}' after an object member." );
      }
      take();
      c = next();
   }
   if ( c != '"' ) {
      fail( "Missing a name for object member." );
   }
   return true;
}

void JsonText::end() {
   if ( next() != '\0' || at_ != file_.end() ) {
      fail( "The document root must not be followed by other values." );
   }
}

std::string_view JsonText::anyString() {
   string_.clear();
   take();
   for ( ;; ) {
      char const * const end = plainEnd( at_ );
      string_.append( at_, end );
      at_ = end;
      auto const byte = static_cast< unsigned char >( *at_ );
      if ( byte == '"' ) {
         take();
         return string_;
      }
      if ( byte == '\\' ) {
         escape();
      } else if ( byte >= 0x80 ) {
         multiByte();
      } else if ( at_ != file_.end() || !more() ) {
         fail( byte == 0 ? "Missing a closing quotation mark in string." : badEscape );
      }
   }
}

void JsonText::escape() {
   static constexpr std::string_view letters = "\"\\/bfnrt";
   have( std::string_view( "\\ud83d\\ude00" ).size() );
   if ( size_t const at = letters.find( at_[1] ); at != letters.npos ) {
      string_ += "\"\\/\b\f\n\r\t"[at];
      at_ += 2;
      return;
   }
   if ( at_[1] != 'u' ) {
      fail( badEscape );
   }
   size_t size = 6;
   unsigned code = hexDigits( 2 );
   if ( code >= 0xd800 && code <= 0xdfff ) {
      if ( code >= 0xdc00 || at_[6] != '\\' || at_[7] != 'u' ) {
         fail( badSurrogates );
      }
      unsigned const low = hexDigits( 8 );
      if ( low < 0xdc00 || low > 0xdfff ) {
         fail( badSurrogates );
      }
      code = 0x10000 + ( ( code - 0xd800 ) << 10 ) + ( low - 0xdc00 );
      size = 12;
   }
   appendUtf8( string_, code );
   at_ += size;
}

unsigned JsonText::hexDigits( size_t behind ) {
   static constexpr std::string_view digits = "0123456789abcdefABCDEF";
   unsigned code = 0;
   for ( size_t at = behind; at < behind + 4; ++at ) {
      size_t const digit = digits.find( at_[at] );
      if ( digit == digits.npos ) {
         fail( "Incorrect hex digit after \\u escape in string." );
      }
      code = code * 16 + static_cast< unsigned >( digit < 16 ? digit : digit - 6 );
   }
   return code;
}

void JsonText::multiByte() {
   have( 4 );
   size_t const size = sizeOfMultiByte( at_ );
   if ( size == 0 ) {
      fail( badEncoding );
   }
   string_.append( at_, size );
   at_ += size;
}

bool JsonText::digits( size_t & behind ) {
   size_t const begin = behind;
   while ( isBetween( static_cast< unsigned char >( peek( behind ) ), '0', '9' ) ) {
      ++behind;
   }
   return behind > begin;
}

std::string_view JsonText::number() {
   size_t size = peek( 0 ) == '-' ? 1 : 0;
   if ( peek( size ) == '0' ) {
      ++size;
   } else if ( !digits( size ) ) {
      fail( badValue, size );
   }
   if ( peek( size ) == '.' && !digits( ++size ) ) {
      fail( "Miss fraction part in number.", size );
   }
   if ( peek( size ) == 'e' || peek( size ) == 'E' ) {
      ++size;
      size += peek( size ) == '+' || peek( size ) == '-' ? 1 : 0;
      if ( !digits( size ) ) {
         fail( "Miss exponent in number.", size );
      }
   }
   std::string_view const text( at_, size );
   if ( isTooBig( text ) ) {
      fail( "Number too big to be stored in double." );
   }
   at_ += size;
   return text;
}

void JsonText::word( std::string_view word ) {
   for ( size_t at = 0; at < word.size(); ++at ) {
      if ( peek( at ) != word[at] ) {
         fail( badValue, at );
      }
   }
   at_ += word.size();
}

bool JsonText::isWord( std::string_view word ) {
   have( word.size() + 1 );
   if ( !std::string_view( at_, file_.end() ).starts_with( word ) || !isEnd( at_[word.size()] ) ) {
      return false;
   }
   at_ += word.size();
   return true;
}

std::string JsonText::scrap() {
   size_t size = 0;
   while ( !isEnd( peek( size ) ) ) {
      ++size;
   }
   std::string text( at_, size );
   at_ += size;
   return text;
}

void JsonText::scalar() {
   switch ( type() ) {
   case JsonType::string:
      string();
      break;
   case JsonType::boolean:
      word( *at_ == 't' ? "true" : "false" );
      break;
   case JsonType::null:
      word( "null" );
      break;
   default:
      number();
   }
}

void JsonText::skip() {
   std::vector< bool > lists; // for each container that is open: whether it is a list
   do {
      JsonType const kind = type();
      bool isFirst = kind == JsonType::object || kind == JsonType::list;
      if ( isFirst ) {
         take();
         lists.push_back( kind == JsonType::list );
      } else {
         scalar();
      }
      // On to the next value, out of the containers that end here.
      while ( !lists.empty() && !( lists.back() ? element( isFirst ) : member( isFirst ) ) ) {
         lists.pop_back();
         isFirst = false;
      }
      if ( !lists.empty() && !lists.back() ) {
         string();
         memberValue();
      }
   } while ( !lists.empty() );
}

} // namespace tpcli
