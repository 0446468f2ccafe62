// What the framework knows about a class: its name, base, constructor and attributes, and how many
// objects of it are alive.

#pragma once

#include "TrafficPolicy/platform/vorn/TypeName.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace Vorn {

struct AttributeRow;
struct ConstructorRow;

// One per class, in static memory and made by the compiler, so that it accounts from the first
// object on, whatever runs at load time. A described class stands in the list that first() starts
// once its source file is initialised; a plain record class (configuration, status, counters) only
// accounts.
class TypeRecord {
public:
   using Attributes = std::span< AttributeRow const >;
   // Gives a record that the compiler need not see.
   using Other = TypeRecord const & (*)();

   // An accounting record without a description.
   constexpr TypeRecord( std::string_view name, size_t objectSize ) noexcept
      : name_( name )
      , objectSize_( objectSize ) {}
   // A described class. The attributes are the class's own, in declaration order.
   constexpr TypeRecord( std::string_view name, size_t objectSize, Other baseRecord,
                         Attributes attributes, ConstructorRow const * constructor ) noexcept
      : name_( name )
      , objectSize_( objectSize )
      , base_( baseRecord )
      , attributes_( attributes )
      , constructor_( constructor ) {}
   TypeRecord( TypeRecord const & ) = delete;
   TypeRecord & operator=( TypeRecord const & ) = delete;

   // Qualified, such as "TrafficPolicyCli::PolicyState".
   std::string_view name() const { return name_; }
   // The described base class; null for a class that derives from the framework's base alone.
   TypeRecord const * base() const { return base_ ? &base_() : nullptr; }
   Attributes attributes() const { return attributes_; }
   // Null for a class that is not described.
   ConstructorRow const * constructor() const { return constructor_; }

   // Objects alive now, and their bytes (the objects' own size, not what their collections hold).
   size_t objects() const { return objects_; }
   uint64_t bytes() const { return uint64_t{ objects_ } * objectSize_; }

   // The tracked allocator: memory for one object, accounted to this record.
   void * allocate() const;
   // Gives the memory back, after destruction or when a constructor has thrown.
   void deallocate( void * memory ) const noexcept;

   // The described classes, in the order of initialisation reversed.
   static TypeRecord const * first() { return first_; }
   TypeRecord const * next() const { return next_; }
   // The same, by ascending name.
   static std::vector< TypeRecord const * > sorted();
   // Null when no described class has this qualified name.
   static TypeRecord const * find( std::string_view name );

private:
   friend class Registration;

   static inline constinit TypeRecord const * first_ = nullptr;

   std::string_view name_;
   size_t objectSize_;
   mutable size_t objects_ = 0;
   Other base_ = nullptr;
   Attributes attributes_;
   ConstructorRow const * constructor_ = nullptr;
   mutable TypeRecord const * next_ = nullptr;
};

// Enters a record in the list of described classes.
class Registration {
public:
   explicit Registration( TypeRecord const & record ) noexcept;
};

} // namespace Vorn
