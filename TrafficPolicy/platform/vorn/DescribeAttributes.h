// Collects the attributes that a class declares into the rows of its type record: in one source
// file, that with the VORN_TYPE.

#pragma once

#include "TrafficPolicy/platform/vorn/AttributeRow.h"
#include "TrafficPolicy/platform/vorn/DeclaredLines.h"
#include "TrafficPolicy/platform/vorn/StorageOperations.h"

#include <array>
#include <memory>
#include <utility>

namespace Vorn {

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
