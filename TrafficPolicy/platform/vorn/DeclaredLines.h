// The attributes that a class declares, in the order of their lines.
//
// Each declaration is an overload of vornDeclared() for its own source line, so every line that a
// class may have is tried. The compiler does that where a class is constructed or described.

#pragma once

#include "TrafficPolicy/platform/vorn/Attribute.h"

#include <array>
#include <cstddef>
#include <utility>

namespace Vorn {

template< typename Class, int line >
concept DeclaresAt = requires {
   Class::vornDeclared( RowTag< Class, line >{} );
};

template< typename Class >
inline constexpr auto declaresByLine = []< int... line >( std::integer_sequence< int, line... > ) {
   return std::array< bool, sizeof...( line ) >{ DeclaresAt< Class, line >... };
}
( std::make_integer_sequence< int, rowLineMax >() );

template< typename Class >
inline constexpr size_t declaredCount = [] {
   size_t count = 0;
   for ( bool const declares : declaresByLine< Class > ) {
      count += declares;
   }
   return count;
}();

// The lines that declare an attribute, ascending.
template< typename Class >
inline constexpr auto declaredLines = [] {
   std::array< int, declaredCount< Class > > lines{};
   auto next = lines.begin();
   for ( int line = 0; line < rowLineMax; ++line ) {
      if ( declaresByLine< Class >[static_cast< size_t >( line )] ) {
         *next++ = line;
      }
   }
   return lines;
}();

template< typename Class, int line >
inline constexpr auto declaredAt = Class::vornDeclared( RowTag< Class, line >{} );

template< typename Class, int line >
using StorageAt = typename decltype( declaredAt< Class, line > )::StorageType;

} // namespace Vorn
