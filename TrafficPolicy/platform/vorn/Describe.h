// The type record of a described class, made from its attribute declarations.

#pragma once

#include "TrafficPolicy/platform/vorn/Attribute.h"
#include "TrafficPolicy/platform/vorn/TypeRecord.h"

namespace Vorn {

template< typename Base >
TypeRecord const *
describedBase() {
   if constexpr( std::is_same_v< Base, PtrInterface > ) {
      return nullptr;
   } else {
      return &Base::typeRecord();
   }
}

} // namespace Vorn

// Stands once, in the class's source file, in the class's namespace. The class is registered at load
// time.
#define VORN_TYPE( Class )                                                                         \
   static Vorn::TypeRecord const vornRecordOf##Class{                                              \
      Vorn::typeName< Class >(), sizeof( Class ), Vorn::describedBase< Class::VornBase >(), {},    \
      nullptr };                                                                                   \
   Vorn::TypeRecord const & Class::typeRecord() { return vornRecordOf##Class; }                    \
   Vorn::TypeRecord const & Class::type() const { return vornRecordOf##Class; }
