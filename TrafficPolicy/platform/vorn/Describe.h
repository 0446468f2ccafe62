// The type record of a described class, made from its attribute declarations.

#pragma once

#include "TrafficPolicy/platform/vorn/DescribeAttributes.h"
#include "TrafficPolicy/platform/vorn/DescribeConstructor.h"
#include "TrafficPolicy/platform/vorn/TypeRecord.h"

#include <type_traits>

namespace Vorn {

template< typename Class >
constexpr TypeRecord::Other baseOf() {
   using Base = typename Class::VornBase;
   static_assert( std::is_base_of_v< Base, Class > );
   if constexpr ( std::is_same_v< Base, PtrInterface > ) {
      return nullptr;
   } else {
      return &Base::typeRecord;
   }
}

template< typename Class >
constexpr TypeRecord describe() {
   static_assert( std::is_same_v< Class, typename Class::VornSelf >,
                  "every described class has its own VORN_ENTITY" );
   return { typeName< Class >(), sizeof( Class ), baseOf< Class >(), attributeRows< Class >,
            &Constructor< Class >::row };
}

} // namespace Vorn

// Once per class, in its source file and namespace. Registers the class at load time; everything
// else is constant data.
#define VORN_TYPE( Class )                                                                         \
   static constinit Vorn::TypeRecord const vornRecordOf##Class = Vorn::describe< Class >();        \
   static Vorn::Registration const vornRegistrationOf##Class( vornRecordOf##Class );               \
   Vorn::TypeRecord const & Class::typeRecord() {                                                  \
      return vornRecordOf##Class;                                                                  \
   }                                                                                               \
   Vorn::TypeRecord const & Class::type() const {                                                  \
      return vornRecordOf##Class;                                                                  \
   }
