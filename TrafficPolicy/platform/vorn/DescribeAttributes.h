// Collects the attributes that a class declares into the rows of its type record.
//
// Each declaration is an overload of vornDeclared() for its own source line, so every line that a
// class may have is tried. The compiler does that once, in the source file with the VORN_TYPE.

#pragma once

#include "TrafficPolicy/platform/vorn/Attribute.h"
#include "TrafficPolicy/platform/vorn/AttributeRow.h"
#include "TrafficPolicy/platform/vorn/StorageOperations.h"

#include <algorithm>
#include <array>
#include <memory>
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

// The lines that declare an attribute, ascending.
template< typename Class >
inline constexpr auto declaredLines = [] {
   constexpr auto const & declares = declaresByLine< Class >;
   std::array< int, std::count( declares.begin(), declares.end(), true ) > lines{};
   auto next = lines.begin();
   for ( int line = 0; line < rowLineMax; ++line ) {
      if ( declares[static_cast< size_t >( line )] ) {
         *next++ = line;
      }
   }
   return lines;
}();

template< typename Class, int line >
inline constexpr auto declaredAt = Class::vornDeclared( RowTag< Class, line >{} );

template< typename Class, int line >
using StorageAt = typename decltype( declaredAt< Class, line > )::StorageType;

template< typename Class, int line >
void const * storageAt( PtrInterface const & object ) {
   return std::addressof( static_cast< Class const & >( object )
                          .*declaredAt< Class, line >.storage );
}

template< typename Class, int line >
inline constexpr AttributeRow rowAt{
   declaredAt< Class, line >.name, declaredAt< Class, line >.kind,
   &operationsOf< declaredAt< Class, line >.kind, StorageAt< Class, line > >(),
   &storageAt< Class, line >
};

// The class's own attributes, in declaration order.
template< typename Class >
inline constexpr auto attributeRows = []< size_t... i >( std::index_sequence< i... > ) {
   return std::array< AttributeRow, sizeof...( i ) >{
      rowAt< Class, declaredLines< Class >[i] >...
   };
}
( std::make_index_sequence< declaredLines< Class >.size() >() );

} // namespace Vorn
