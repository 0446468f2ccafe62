// Collections that own their entries: child() creates an entry that is missing from its key.

#pragma once

#include "TrafficPolicy/platform/vorn/Create.h"
#include "TrafficPolicy/platform/vorn/HashMap.h"
#include "TrafficPolicy/platform/vorn/OrderedMap.h"

namespace Vorn {

template< typename Map, typename Entity >
class Children : public Map {
public:
   using ChildType = Entity;

   // The child with this key, created if there is none.
   Ptr< Entity > child( typename Map::KeyType const & key ) {
      if ( auto const * present = this->lookup( key ) ) {
         return *present;
      }
      auto created = create< Entity >( key );
      this->set( key, created );
      return created;
   }
   // The child with this key, or null.
   Entity * find( typename Map::KeyType const & key ) const {
      auto const * present = this->lookup( key );
      return present ? present->get() : nullptr;
   }
};

template< typename Key, typename Entity >
using OrderedChildren = Children< OrderedMap< Key, Ptr< Entity > >, Entity >;
template< typename Key, typename Entity >
using HashedChildren = Children< HashMap< Key, Ptr< Entity > >, Entity >;

} // namespace Vorn
