#include "TrafficPolicy/platform/vorn/TypeRecord.h"

#include "TrafficPolicy/platform/vorn/Threading.h"

#include <new>

namespace Vorn {

TypeRecord::TypeRecord( std::string_view name, size_t objectSize, TypeRecord const * base,
                        Attributes attributes, ConstructorRow const * constructor ) noexcept
    : name_( name ),
      objectSize_( objectSize ),
      base_( base ),
      attributes_( attributes ),
      constructor_( constructor ),
      next_( first_ ) {
   first_ = this;
}

void *
TypeRecord::allocate() const {
   void * memory = ::operator new( objectSize_ );
   countAdd( objects_, size_t{ 1 } );
   return memory;
}

void
TypeRecord::deallocate( void * memory ) const noexcept {
   countSub( objects_, size_t{ 1 } );
   ::operator delete( memory, objectSize_ );
}

TypeRecord const *
TypeRecord::find( std::string_view name ) {
   for( TypeRecord const * record = first_; record; record = record->next_ ) {
      if( record->name_ == name ) {
         return record;
      }
   }
   return nullptr;
}

} // namespace Vorn
