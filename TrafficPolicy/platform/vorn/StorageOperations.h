// The operations of each kind of storage, for access to attributes by name.
//
// Made once per kind and type, however many attributes share them.

#pragma once

#include "TrafficPolicy/platform/vorn/AttributeRow.h"
#include "TrafficPolicy/platform/vorn/Children.h"
#include "TrafficPolicy/platform/vorn/FromValue.h"
#include "TrafficPolicy/platform/vorn/HashMap.h"
#include "TrafficPolicy/platform/vorn/IndexedArray.h"
#include "TrafficPolicy/platform/vorn/OrderedMap.h"

namespace Vorn {

template< typename Storage >
Storage & storageOf( void * storage ) {
   return *static_cast< Storage * >( storage );
}
template< typename Storage >
Storage const & storageOf( void const * storage ) {
   return *static_cast< Storage const * >( storage );
}

// Inputs and scalars.
template< typename T >
struct StorageOperations {
   static Value read( void const * storage ) { return storageOf< T >( storage ); }
   static void write( void * storage, Value const & value, Place const & place ) {
      storageOf< T >( storage ) = fromValue< T >( value, place );
   }
   static constexpr AttributeOperations input{ .valueType = typeName< T >(), .read = read };
   static constexpr AttributeOperations table{ .valueType = typeName< T >(),
                                               .read = read,
                                               .write = write };
};

// What all collections have in common.
template< typename Collection >
struct KeyedOperations {
   using Key = typename Collection::KeyType;

   static void erase( void * storage, Value const & key, Place const & place ) {
      storageOf< Collection >( storage ).erase( fromValue< Key >( key, place.key() ) );
   }
   static void clear( void * storage ) { storageOf< Collection >( storage ).clear(); }
};

template< typename Map >
struct MapOperations : KeyedOperations< Map > {
   using Key = typename Map::KeyType;
   using Mapped = typename Map::ValueType;

   static Value lookup( void const * storage, Value const & key, Place const & place ) {
      Map const & map = storageOf< Map >( storage );
      Mapped const * present = map.lookup( fromValue< Key >( key, place.key() ) );
      return present ? Value( *present ) : Value();
   }
   static void insert( void * storage, Value const & key, Value const & value,
                       Place const & place ) {
      auto const convertedKey = fromValue< Key >( key, place.key() );
      storageOf< Map >( storage ).set( convertedKey, fromValue< Mapped >( value, place ) );
   }
   static std::vector< Entry > entries( void const * storage ) {
      auto const & map = storageOf< Map >( storage );
      EntryList list( map.size() );
      for ( auto const & [key, value] : map ) {
         list.add( key, value );
      }
      return list.take();
   }
   static constexpr AttributeOperations table{ .keyType = typeName< Key >(),
                                               .valueType = typeName< Mapped >(),
                                               .lookup = lookup,
                                               .insert = insert,
                                               .erase = MapOperations::erase,
                                               .clear = MapOperations::clear,
                                               .entries = entries };
};
template< typename Key, typename Mapped >
struct StorageOperations< OrderedMap< Key, Mapped > >
   : MapOperations< OrderedMap< Key, Mapped > > {};
template< typename Key, typename Mapped >
struct StorageOperations< HashMap< Key, Mapped > > : MapOperations< HashMap< Key, Mapped > > {};

// Only the collection makes children.
template< typename Map, typename Child >
struct StorageOperations< Children< Map, Child > > : KeyedOperations< Children< Map, Child > > {
   using Collection = Children< Map, Child >;
   using Key = typename Map::KeyType;

   static Ptr< PtrInterface > create( void * storage, Value const & key, Place const & place ) {
      return storageOf< Collection >( storage ).child( fromValue< Key >( key, place.key() ) );
   }
   static constexpr AttributeOperations table{ .keyType = typeName< Key >(),
                                               .valueType = typeName< Ptr< Child > >(),
                                               .lookup = MapOperations< Collection >::lookup,
                                               .create = create,
                                               .erase = StorageOperations::erase,
                                               .clear = StorageOperations::clear,
                                               .entries = MapOperations< Collection >::entries };
};

template< typename Key >
struct StorageOperations< HashSet< Key > > : KeyedOperations< HashSet< Key > > {
   using Set = HashSet< Key >;

   static Value lookup( void const * storage, Value const & key, Place const & place ) {
      return storageOf< Set >( storage ).contains( fromValue< Key >( key, place.key() ) );
   }
   static void insert( void * storage, Value const & key, Value const & value,
                       Place const & place ) {
      auto const convertedKey = fromValue< Key >( key, place.key() );
      if ( !value.isNothing() ) {
         place.refuse( "nothing", value, "a set has keys only" );
      }
      storageOf< Set >( storage ).insert( convertedKey );
   }
   static std::vector< Entry > entries( void const * storage ) {
      auto const & set = storageOf< Set >( storage );
      EntryList list( set.size() );
      for ( Key const & key : set ) {
         list.add( key );
      }
      return list.take();
   }
   static constexpr AttributeOperations table{ .keyType = typeName< Key >(),
                                               .lookup = lookup,
                                               .insert = insert,
                                               .erase = StorageOperations::erase,
                                               .clear = StorageOperations::clear,
                                               .entries = entries };
};

// An index beyond the array's bound is an assertion in typed code; here it may be a user's mistake.
template< typename T >
struct StorageOperations< IndexedArray< T > > {
   using Array = IndexedArray< T >;

   static unsigned index( Value const & key, Place const & place ) {
      auto const at = fromValue< unsigned >( key, place.key() );
      if ( at >= rulesMax ) {
         place.key().refuse( typeName< unsigned >(), key, "beyond the array's bound" );
      }
      return at;
   }
   static Value lookup( void const * storage, Value const & key, Place const & place ) {
      return storageOf< Array >( storage ).at( index( key, place ) );
   }
   static void insert( void * storage, Value const & key, Value const & value,
                       Place const & place ) {
      auto const at = index( key, place );
      storageOf< Array >( storage ).set( at, fromValue< T >( value, place ) );
   }
   static void erase( void * storage, Value const & key, Place const & place ) {
      storageOf< Array >( storage ).erase( index( key, place ) );
   }
   static void clear( void * storage ) { storageOf< Array >( storage ).clear(); }
   static std::vector< Entry > entries( void const * storage ) {
      auto const & array = storageOf< Array >( storage );
      EntryList list( array.size() );
      for ( auto at = array.begin(); at != array.end(); ++at ) {
         list.add( at.index(), *at );
      }
      return list.take();
   }
   static constexpr AttributeOperations table{ .keyType = typeName< unsigned >(),
                                               .valueType = typeName< T >(),
                                               .lookup = lookup,
                                               .insert = insert,
                                               .erase = erase,
                                               .clear = clear,
                                               .entries = entries };
};

template< AttributeKind kind, typename Storage >
constexpr AttributeOperations const & operationsOf() {
   if constexpr ( kind == AttributeKind::input ) {
      return StorageOperations< Storage >::input;
   } else {
      return StorageOperations< Storage >::table;
   }
}

} // namespace Vorn
