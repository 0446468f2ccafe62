// Members that few objects of a class use: stored apart, so that the other objects need no room for
// them.
//
//    class Shades {
//       VORN_PART( Shades )
//       VORN_SET( Vorn::String, colours )
//    };
//    class Lamp : public Vorn::PtrInterface {
//       VORN_RECORD( Lamp )
//       VORN_SCALAR( bool, lit )
//       VORN_RARE( Shades )
//       VORN_RARE_SET( Vorn::String, colours ) // accessors as of an attribute of Lamp itself
//    };

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"
#include "TrafficPolicy/platform/vorn/Memory.h"

#include <new>

namespace Vorn {

// Owns a part that is made when it is first changed. Until then all share one empty part.
template< typename Part >
class TRAFFIC_POLICY_API Rare {
public:
   Rare() = default;
   Rare( Rare const & ) = delete;
   Rare & operator=( Rare const & ) = delete;
   ~Rare() {
      if ( part_ != &empty_ ) {
         part_->~Part();
         Pool::release( part_, sizeof( Part ) );
      }
   }

   Part const * operator->() const { return part_; }
   // The part, made if there is none. Throws std::bad_alloc.
   Part & use() {
      if ( part_ == &empty_ ) {
         static_assert( alignof( Part ) <= Pool::alignment );
         part_ = ::new ( Pool::allocate( sizeof( Part ) ) ) Part();
      }
      return *part_;
   }

private:
   static inline constinit Part empty_; // never changed

   Part * part_ = &empty_;
};

} // namespace Vorn

#define VORN_PART( Class )                                                                         \
public:                                                                                            \
   using VornSelf = Class;                                                                         \
   Class() = default;

#define VORN_RARE( Part )                                                                          \
private:                                                                                           \
   Vorn::Rare< Part > rare_;                                                                       \
                                                                                                   \
public:

// Counts as a declaration of the class (declaredLines), but makes no row: records are not
// described.
#define VORN_RARE_DECLARED                                                                         \
   static constexpr void vornDeclared( Vorn::RowTag< VornSelf, __LINE__ > ) {}

#define VORN_RARE_SCALAR( Type, name )                                                             \
   Vorn::Read< Type > name() const {                                                               \
      return rare_->name();                                                                        \
   }                                                                                               \
   void name##Is( Vorn::Read< Type > value ) {                                                     \
      rare_.use().name##Is( value );                                                               \
   }                                                                                               \
   VORN_RARE_DECLARED

#define VORN_RARE_SET( Key, name )                                                                 \
   Vorn::HashSet< Key > const & name() const {                                                     \
      return rare_->name();                                                                        \
   }                                                                                               \
   bool name( Key const & key ) const {                                                            \
      return rare_->name( key );                                                                   \
   }                                                                                               \
   bool name##Is( Key const & key ) {                                                              \
      return rare_.use().name##Is( key );                                                          \
   }                                                                                               \
   void name##Del( Key const & key ) {                                                             \
      rare_.use().name##Del( key );                                                                \
   }                                                                                               \
   void name##Del( Vorn::HashSet< Key >::Iterator const & where ) {                                \
      rare_.use().name##Del( where );                                                              \
   }                                                                                               \
   void name##DelAll() {                                                                           \
      rare_.use().name##DelAll();                                                                  \
   }                                                                                               \
   VORN_RARE_DECLARED

#define VORN_RARE_HASHED_MAP( Key, Value, name )                                                   \
   Vorn::HashMap< Key, Value > const & name() const {                                              \
      return rare_->name();                                                                        \
   }                                                                                               \
   Value const * name( Key const & key ) const {                                                   \
      return rare_->name( key );                                                                   \
   }                                                                                               \
   bool name##Is( Key const & key, Value value ) {                                                 \
      return rare_.use().name##Is( key, std::move( value ) );                                      \
   }                                                                                               \
   Value name##Del( Key const & key ) {                                                            \
      return rare_.use().name##Del( key );                                                         \
   }                                                                                               \
   void name##Del( Vorn::HashMap< Key, Value >::Iterator const & where ) {                         \
      rare_.use().name##Del( where );                                                              \
   }                                                                                               \
   void name##DelAll() {                                                                           \
      rare_.use().name##DelAll();                                                                  \
   }                                                                                               \
   VORN_RARE_DECLARED
