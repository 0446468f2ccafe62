#include "TrafficPolicy/platform/vorn/TypeRecord.h"

#include "TrafficPolicy/platform/vorn/Memory.h"
#include "TrafficPolicy/platform/vorn/Threading.h"

#include <algorithm>
#include <utility>

namespace Vorn {

// All threads count here. With one thread alone, an atomic addition would be a tenth of an
// allocation.
void TypeRecord::countBy( size_t amount ) const noexcept {
   if ( isSingleThreaded() ) {
      __atomic_store_n( &objects_, objects() + amount, __ATOMIC_RELAXED );
   } else {
      __atomic_fetch_add( &objects_, amount, __ATOMIC_RELAXED );
   }
}

void * TypeRecord::allocate() const {
   void * memory = Pool::allocate( objectSize_ );
   countBy( 1 );
   return memory;
}

void TypeRecord::deallocate( void * memory ) const noexcept {
   countBy( size_t{ 0 } - 1 );
   Pool::release( memory, objectSize_ );
}

TypeRecord const * TypeRecord::find( std::string_view name ) {
   for ( TypeRecord const * record = first_; record; record = record->next_ ) {
      if ( record->name_ == name ) {
         return record;
      }
   }
   return nullptr;
}

std::vector< TypeRecord const * > TypeRecord::sorted() {
   std::vector< TypeRecord const * > result;
   for ( TypeRecord const * record = first_; record; record = record->next_ ) {
      result.push_back( record );
   }
   std::sort( result.begin(), result.end(),
              []( auto const * a, auto const * b ) { return a->name() < b->name(); } );
   return result;
}

Registration::Registration( TypeRecord const & record ) noexcept {
   record.next_ = std::exchange( TypeRecord::first_, &record );
}

} // namespace Vorn
