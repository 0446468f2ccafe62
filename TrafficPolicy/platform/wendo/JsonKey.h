// The name of a JSON member, quoted at compile time.

#pragma once

#include "TrafficPolicy/platform/vorn/Assert.h"
#include "TrafficPolicy/platform/wendo/PlainText.h"

#include <cstddef>
#include <string_view>

namespace wendo {

// Stores `"name":` in a fixed number of bytes, so that it is written by copies of known size.
class JsonKey {
public:
   static constexpr size_t room = PlainText::room;

   // Asserts that the name fits and needs no escaping. An empty name marks a list element.
   constexpr explicit JsonKey( std::string_view name )
      : empty_( name.empty() ) {
      VORN_ASSERT( name.size() + 3 <= room );
      text_[size_++] = '"';
      for ( char const c : name ) {
         VORN_ASSERT( c >= 0x20 && c < 0x7f && c != '"' && c != '\\' );
         text_[size_++] = c;
      }
      text_[size_++] = '"';
      text_[size_++] = ':';
   }

   constexpr bool empty() const { return empty_; }
   // The quoted name and the colon: size() bytes, readable up to room.
   constexpr char const * text() const { return text_; }
   constexpr size_t size() const { return size_; }
   // The name alone.
   constexpr std::string_view name() const { return { text_ + 1, size_ - 3u }; }

private:
   char text_[room] = {};
   unsigned char size_ = 0;
   bool empty_;
};

inline constexpr JsonKey listElement{ "" };

} // namespace wendo
