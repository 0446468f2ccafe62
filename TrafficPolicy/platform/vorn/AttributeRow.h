// The rows of a type record: a class's attributes, and the operations on them for code that does
// not know the class.

#pragma once

#include "TrafficPolicy/platform/vorn/AccessError.h"
#include "TrafficPolicy/platform/vorn/AttributeKind.h"
#include "TrafficPolicy/platform/vorn/TypeRecord.h"
#include "TrafficPolicy/platform/vorn/Value.h"

#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace Vorn {

// A key and its value. In a set there are only keys; an array's key is the index.
struct Entry {
   Value key;
   Value value;

   friend bool operator==( Entry const &, Entry const & ) = default;
};

// Collects the entries of a collection.
class EntryList {
public:
   // Makes room for this many.
   explicit EntryList( size_t entries );
   void add( Value key, Value value = {} );
   std::vector< Entry > take() { return std::move( entries_ ); }

private:
   std::vector< Entry > entries_;
};

// The operations on an attribute's storage: one table for all attributes of one kind and type. An
// operation that the kind lacks is null. All convert their values before they change anything, and
// throw AccessError for a value of another type or outside its range.
struct AttributeOperations {
   std::string_view keyType{};   // empty when there are no keys
   std::string_view valueType{}; // empty for a set

   Value ( *read )( void const * storage ) = nullptr;
   void ( *write )( void * storage, Value const & value, Place const & place ) = nullptr;
   // Nothing when the key is absent; for a set, whether it contains the key.
   Value ( *lookup )( void const * storage, Value const & key, Place const & place ) = nullptr;
   // Inserts or overwrites.
   void ( *insert )( void * storage, Value const & key, Value const & value,
                     Place const & place ) = nullptr;
   // The child with the key, created if there is none.
   Ptr< PtrInterface > ( *create )( void * storage, Value const & key,
                                    Place const & place ) = nullptr;
   // Removes if present.
   void ( *erase )( void * storage, Value const & key, Place const & place ) = nullptr;
   void ( *clear )( void * storage ) = nullptr;
   std::vector< Entry > ( *entries )( void const * storage ) = nullptr;

   // The names of those that exist.
   std::vector< std::string_view > names() const;
};

struct AttributeRow {
   std::string_view name;
   AttributeKind kind;
   AttributeOperations const * operations;
   // Where it is kept in an object, which must be of the row's class.
   void const * ( *storage )( PtrInterface const & object );
};

struct ParameterRow {
   std::string_view name;
   std::string_view type;
};

struct ConstructorRow {
   // The inputs of the base classes first.
   std::span< ParameterRow const > parameters;
   // Expects one value for each parameter. construct() checks that.
   Ptr< PtrInterface > ( *construct )( std::span< Value const > arguments );
};

// The class's own or inherited attribute of this name; null when there is none.
AttributeRow const * findAttribute( TypeRecord const & type, std::string_view name );

} // namespace Vorn
