// The description of a class: its name, base, constructor and attributes, and its live objects.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/TypeName.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace Vorn {

struct AttributeRow;
struct ConstructorRow;

// One per class, constant-initialised in static memory, so that it counts from the first object on,
// also at load time. A described class is in the list of first() once its source file is
// initialised; a plain record class (configuration, status, counters) is only counted.
class TRAFFIC_POLICY_API TypeRecord {
public:
   using Attributes = std::span< AttributeRow const >;
   // Returns the record of another class.
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
   size_t objects() const { return __atomic_load_n( &objects_, __ATOMIC_RELAXED ); }
   uint64_t bytes() const { return uint64_t{ objects() } * objectSize_; }

   // The tracked allocator: memory for one object, counted in this record. Throws std::bad_alloc.
   void * allocate() const;
   // Releases the memory, after destruction or when a constructor has thrown.
   void deallocate( void * memory ) const noexcept;

   // The described classes, in reverse order of initialisation.
   static TypeRecord const * first() { return first_; }
   TypeRecord const * next() const { return next_; }
   // The same, by ascending name.
   static std::vector< TypeRecord const * > sorted();
   // Null when no described class has this qualified name.
   static TypeRecord const * find( std::string_view name );

private:
   friend class Registration;

   // Adds to the count of objects, modulo the range of size_t.
   void countBy( size_t amount ) const noexcept;

   static inline constinit TypeRecord const * first_ = nullptr;

   std::string_view name_;
   size_t objectSize_;
   mutable size_t objects_ = 0; // accessed atomically
   Other base_ = nullptr;
   Attributes attributes_;
   ConstructorRow const * constructor_ = nullptr;
   mutable TypeRecord const * next_ = nullptr;
};

// Adds a record to the list of described classes.
class Registration {
public:
   explicit Registration( TypeRecord const & record ) noexcept;
};

} // namespace Vorn
