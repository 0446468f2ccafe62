// Creation of entities. All entities are created here.

#pragma once

#include "TrafficPolicy/platform/vorn/Memory.h"
#include "TrafficPolicy/platform/vorn/Ptr.h"
#include "TrafficPolicy/platform/vorn/TypeRecord.h"

#include <new>
#include <type_traits>
#include <utility>

namespace Vorn {

// Allocates through the class's type record, constructs, and turns notifications on. When the
// constructor throws, memory and accounting are released and the exception passes. Never null.
template< typename T, typename... Arguments >
Ptr< T > create( Arguments &&... arguments ) {
   static_assert( std::is_same_v< T, typename T::VornSelf >,
                  "every class has its own type record" );
   static_assert( alignof( T ) <= Pool::alignment );
   void * memory = T::typeRecord().allocate();
   Ptr< T > object;
   try {
      object = Ptr< T >( ::new ( memory ) T( std::forward< Arguments >( arguments )... ) );
   } catch ( ... ) {
      T::typeRecord().deallocate( memory );
      throw;
   }
   object->hasNotificationActiveIs( true );
   return object;
}

} // namespace Vorn
