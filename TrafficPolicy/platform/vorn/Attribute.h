// Attribute declarations: one line an attribute.
//
//    class Lamp : public Vorn::PtrInterface {
//       VORN_ENTITY( Lamp, Vorn::PtrInterface )
//
//       VORN_INPUT( Vorn::String, name )
//       VORN_SCALAR( bool, lit )
//       VORN_ORDERED_MAP( Vorn::String, unsigned, colours )
//
//       explicit Lamp( Vorn::String const & lampName );
//    };
//
// A line makes the storage (lit_), the accessors (lit(), litIs( value )) and one row of the class's
// type record, through which the command layer accesses the attribute by name. The inputs, in their
// order, are the constructor's parameters, after those of the base class. These are macros because
// nothing else in the language makes a member's name. The lines after each are public.
//
// Accessors of a keyed attribute: x() is the collection, x( key ) looks a key up (null when
// absent), xIs() inserts or overwrites (true: inserted), xDel() removes if present, xDelAll()
// empties.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/AttributeKind.h"
#include "TrafficPolicy/platform/vorn/Children.h"
#include "TrafficPolicy/platform/vorn/HashMap.h"
#include "TrafficPolicy/platform/vorn/IndexedArray.h"
#include "TrafficPolicy/platform/vorn/OrderedMap.h"
#include "TrafficPolicy/platform/vorn/PtrInterface.h"
#include "TrafficPolicy/platform/vorn/SortedArray.h"
#include "TrafficPolicy/platform/vorn/String.h"
#include "TrafficPolicy/platform/vorn/TypeRecord.h"

#include <type_traits>
#include <utility>

namespace Vorn {

// Identifies an attribute by its class and source line.
template< typename Class, int line >
struct RowTag {};
inline constexpr int rowLineMax = 400;

// A declared attribute, before it becomes a row of the type record.
template< typename Class, typename Storage >
struct Declared {
   using StorageType = Storage;
   AttributeKind kind;
   char const * name;
   Storage Class::*storage;
};
template< typename Class, typename Storage >
Declared( AttributeKind, char const *, Storage Class::* ) -> Declared< Class, Storage >;

// Small values are read and passed by value, others by reference.
template< typename T >
using Read = std::conditional_t< std::is_scalar_v< T >, T, T const & >;

// Removes the key's entry and returns its value; a default value when there was none.
template< typename Map >
typename Map::ValueType take( Map & map, typename Map::KeyType const & key ) {
   typename Map::ValueType value{};
   if ( auto * present = map.lookup( key ) ) {
      value = std::move( *present );
      map.erase( key );
   }
   return value;
}

// The accounting record of a class that is not described by name: a platform record.
template< typename T >
TRAFFIC_POLICY_API inline constinit TypeRecord const plainRecord{ typeName< T >(), sizeof( T ) };

} // namespace Vorn

// A described class; its source file has VORN_TYPE( Class ). The pointer makes every program that
// includes the declaration link that file, even if it uses the class by name only.
#define VORN_ENTITY( Class, Base )                                                                 \
public:                                                                                            \
   using VornSelf = Class;                                                                         \
   using VornBase = Base;                                                                          \
   static Vorn::TypeRecord const & typeRecord();                                                   \
   Vorn::TypeRecord const & type() const override;                                                 \
   [[gnu::used]] static constexpr Vorn::TypeRecord const & ( *vornLinked )() = &typeRecord;

// A platform record: counted and accounted, not described.
#define VORN_RECORD( Class )                                                                       \
public:                                                                                            \
   using VornSelf = Class;                                                                         \
   static Vorn::TypeRecord const & typeRecord() {                                                  \
      return Vorn::plainRecord< Class >;                                                           \
   }                                                                                               \
   Vorn::TypeRecord const & type() const override {                                                \
      return Vorn::plainRecord< Class >;                                                           \
   }

#define VORN_DECLARED( Kind, name )                                                                \
   static constexpr auto vornDeclared( Vorn::RowTag< VornSelf, __LINE__ > ) {                      \
      static_assert( __LINE__ < Vorn::rowLineMax );                                                \
      return Vorn::Declared{ Vorn::AttributeKind::Kind, #name, &VornSelf::name##_ };               \
   }

// A value that the constructor sets and nothing changes.
#define VORN_INPUT( Type, name )                                                                   \
public:                                                                                            \
   Vorn::Read< Type > name() const {                                                               \
      return name##_;                                                                              \
   }                                                                                               \
   VORN_DECLARED( input, name )                                                                    \
private:                                                                                           \
   Type name##_{};                                                                                 \
                                                                                                   \
public:

#define VORN_SCALAR( Type, name )                                                                  \
public:                                                                                            \
   Vorn::Read< Type > name() const {                                                               \
      return name##_;                                                                              \
   }                                                                                               \
   void name##Is( Vorn::Read< Type > value ) {                                                     \
      name##_ = value;                                                                             \
   }                                                                                               \
   VORN_DECLARED( scalar, name )                                                                   \
private:                                                                                           \
   Type name##_{};                                                                                 \
                                                                                                   \
public:

#define VORN_MAP( Kind, Map, Key, Value, name )                                                    \
public:                                                                                            \
   Vorn::Map< Key, Value > const & name() const {                                                  \
      return name##_;                                                                              \
   }                                                                                               \
   Value const * name( Key const & key ) const {                                                   \
      return name##_.lookup( key );                                                                \
   }                                                                                               \
   bool name##Is( Key const & key, Value value ) {                                                 \
      return name##_.set( key, std::move( value ) );                                               \
   }                                                                                               \
   Value name##Del( Key const & key ) {                                                            \
      return Vorn::take( name##_, key );                                                           \
   }                                                                                               \
   void name##Del( Vorn::Map< Key, Value >::Iterator const & where ) {                             \
      name##_.erase( where );                                                                      \
   }                                                                                               \
   void name##DelAll() {                                                                           \
      name##_.clear();                                                                             \
   }                                                                                               \
   VORN_DECLARED( Kind, name )                                                                     \
private:                                                                                           \
   Vorn::Map< Key, Value > name##_;                                                                \
                                                                                                   \
public:

#define VORN_ORDERED_MAP( Key, Value, name ) VORN_MAP( orderedMap, OrderedMap, Key, Value, name )
#define VORN_HASHED_MAP( Key, Value, name ) VORN_MAP( hashedMap, HashMap, Key, Value, name )

// An ordered map of entities whose class is not complete in the header, so that users of the header
// need not know it; the class's source file has the accessors' VORN_OPAQUE_MAP_OF.
#define VORN_OPAQUE_ORDERED_MAP( Key, Value, name )                                                \
public:                                                                                            \
   Vorn::OrderedMap< Key, Value > const & name() const {                                           \
      return name##_;                                                                              \
   }                                                                                               \
   Value const * name( Key const & key ) const;                                                    \
   bool name##Is( Key const & key, Vorn::Read< Value > value );                                    \
   Value name##Del( Key const & key );                                                             \
   void name##Del( Vorn::OrderedMap< Key, Value >::Iterator const & where );                       \
   void name##DelAll();                                                                            \
   VORN_DECLARED( orderedMap, name )                                                               \
private:                                                                                           \
   Vorn::OrderedMap< Key, Value > name##_;                                                         \
                                                                                                   \
public:

#define VORN_OPAQUE_MAP_OF( Class, Key, Value, name )                                              \
   Value const * Class::name( Key const & key ) const {                                            \
      return name##_.lookup( key );                                                                \
   }                                                                                               \
   bool Class::name##Is( Key const & key, Vorn::Read< Value > value ) {                            \
      return name##_.set( key, value );                                                            \
   }                                                                                               \
   Value Class::name##Del( Key const & key ) {                                                     \
      return Vorn::take( name##_, key );                                                           \
   }                                                                                               \
   void Class::name##Del( Vorn::OrderedMap< Key, Value >::Iterator const & where ) {               \
      name##_.erase( where );                                                                      \
   }                                                                                               \
   void Class::name##DelAll() {                                                                    \
      name##_.clear();                                                                             \
   }

#define VORN_SET( Key, name )                                                                      \
public:                                                                                            \
   Vorn::HashSet< Key > const & name() const {                                                     \
      return name##_;                                                                              \
   }                                                                                               \
   bool name( Key const & key ) const {                                                            \
      return name##_.contains( key );                                                              \
   }                                                                                               \
   bool name##Is( Key const & key ) {                                                              \
      return name##_.insert( key );                                                                \
   }                                                                                               \
   void name##Del( Key const & key ) {                                                             \
      name##_.erase( key );                                                                        \
   }                                                                                               \
   void name##Del( Vorn::HashSet< Key >::Iterator const & where ) {                                \
      name##_.erase( where );                                                                      \
   }                                                                                               \
   void name##DelAll() {                                                                           \
      name##_.clear();                                                                             \
   }                                                                                               \
   VORN_DECLARED( set, name )                                                                      \
private:                                                                                           \
   Vorn::HashSet< Key > name##_;                                                                   \
                                                                                                   \
public:

// Indexed by rule number; an index past the end reads as empty.
#define VORN_ARRAY( Value, name )                                                                  \
public:                                                                                            \
   Vorn::IndexedArray< Value > const & name() const {                                              \
      return name##_;                                                                              \
   }                                                                                               \
   Value const & name( unsigned index ) const {                                                    \
      return name##_.at( index );                                                                  \
   }                                                                                               \
   void name##Is( unsigned index, Value const & value ) {                                          \
      name##_.set( index, value );                                                                 \
   }                                                                                               \
   void name##Reserve( size_t entries ) {                                                          \
      name##_.reserve( entries );                                                                  \
   }                                                                                               \
   void name##Del( unsigned index ) {                                                              \
      name##_.erase( index );                                                                      \
   }                                                                                               \
   void name##Del( Vorn::IndexedArray< Value >::Iterator const & where ) {                         \
      name##_.erase( where );                                                                      \
   }                                                                                               \
   void name##DelAll() {                                                                           \
      name##_.clear();                                                                             \
   }                                                                                               \
   VORN_DECLARED( array, name )                                                                    \
private:                                                                                           \
   Vorn::IndexedArray< Value > name##_;                                                            \
                                                                                                   \
public:

// Child entities; xIs( key ) creates the child if it is absent and returns it.
#define VORN_CHILDREN( Collection, Key, Child, name )                                              \
public:                                                                                            \
   Vorn::Collection< Key, Child > const & name() const {                                           \
      return name##_;                                                                              \
   }                                                                                               \
   Child * name( Key const & key ) const {                                                         \
      return name##_.find( key );                                                                  \
   }                                                                                               \
   Vorn::Ptr< Child > name##Is( Key const & key ) {                                                \
      return name##_.child( key );                                                                 \
   }                                                                                               \
   void name##Del( Key const & key ) {                                                             \
      name##_.erase( key );                                                                        \
   }                                                                                               \
   void name##Del( Vorn::Collection< Key, Child >::Iterator const & where ) {                      \
      name##_.erase( where );                                                                      \
   }                                                                                               \
   void name##DelAll() {                                                                           \
      name##_.clear();                                                                             \
   }                                                                                               \
   VORN_DECLARED( children, name )                                                                 \
private:                                                                                           \
   Vorn::Collection< Key, Child > name##_;                                                         \
                                                                                                   \
public:

#define VORN_ORDERED_CHILDREN( Key, Child, name ) VORN_CHILDREN( OrderedChildren, Key, Child, name )
#define VORN_HASHED_CHILDREN( Key, Child, name ) VORN_CHILDREN( HashedChildren, Key, Child, name )
