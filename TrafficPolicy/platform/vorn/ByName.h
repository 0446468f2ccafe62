// An entity whose attributes are reached by their names, by a caller that does not know its class.
//
//    Vorn::ByName policy( entity );
//    policy.write( "ruleCount", 3u );
//    policy.insert( "namedCounter", "drops", true );
//    for ( auto const & [name, declared] : policy.entries( "namedCounter" ) ) ...
//    Vorn::ByName( policy.create( "appliedVrf", 0u ) ).insert( "vrfList", "default", true );
//
// Inherited attributes are accessed like own ones. An unknown name, a value of another type and an
// operation that the kind of attribute lacks throw AccessError and change nothing. An attribute's
// row lists its operations.

#pragma once

#include "TrafficPolicy/platform/vorn/AttributeRow.h"
#include "TrafficPolicy/platform/vorn/Ptr.h"

#include <string_view>
#include <type_traits>
#include <vector>

namespace Vorn {

// Keeps the entity alive. A const entity is not changed through it, and entities read from it are
// const.
class ByName {
public:
   // Throws AccessError for a null pointer.
   template< typename T >
   explicit ByName( Ptr< T > const & entity )
      : ByName( Value( entity ) ) {}
   // Throws AccessError for a value that is no entity.
   explicit ByName( Value const & entity );

   TypeRecord const & type() const { return entity_->type(); }

   // An input or a scalar.
   Value read( std::string_view attribute ) const;
   void write( std::string_view attribute, Value const & value ) const;

   // Nothing when the key is absent; for a set, whether it contains the key; for an array, whose
   // index must be below rulesMax, a null pointer where the slot is empty.
   Value lookup( std::string_view attribute, Value const & key ) const;
   // Inserts or overwrites. A set's key comes without a value.
   void insert( std::string_view attribute, Value const & key, Value const & value = {} ) const;
   // The child with the key, created if there is none.
   Ptr< PtrInterface > create( std::string_view attribute, Value const & key ) const;
   // Removes if present.
   void erase( std::string_view attribute, Value const & key ) const;
   void clear( std::string_view attribute ) const;
   // The entries, in the collection's order. A copy: the collection may be changed meanwhile.
   std::vector< Entry > entries( std::string_view attribute ) const;

private:
   AttributeRow const & row( std::string_view attribute ) const;
   void const * storage( AttributeRow const & row ) const { return row.storage( *entity_ ); }
   // The storage, when the entity may be changed.
   void * changeable( AttributeRow const & row ) const;
   Place place( AttributeRow const & row ) const { return { type().name(), row.name }; }
   // Entities come out of a const entity as const ones.
   Value out( Value const & value ) const { return isConst_ ? value.readOnly() : value; }

   Ptr< PtrInterface const > entity_;
   bool isConst_ = false;
};

} // namespace Vorn
