// Vorn::Ptr: the counted pointer that holds every entity.
//
// One machine word; the count is in the object. Pass a plain reference or pointer to code that only
// uses an entity, a Ptr to code that keeps it. Dereferencing a null Ptr is undefined.

#pragma once

#include <concepts>
#include <cstddef>
#include <utility>

namespace Vorn {

template< typename T >
class Ptr {
public:
   using Element = T;

   constexpr Ptr() noexcept = default;
   constexpr Ptr( std::nullptr_t ) noexcept {}
   // Shares ownership of an entity that is already held by a Ptr, or newly created.
   explicit Ptr( T * object ) noexcept
      : object_( object ) {
      acquire();
   }
   Ptr( Ptr const & other ) noexcept
      : object_( other.object_ ) {
      acquire();
   }
   Ptr( Ptr && other ) noexcept
      : object_( std::exchange( other.object_, nullptr ) ) {}
   template< typename U >
      requires std::convertible_to< U *, T * > Ptr( Ptr< U > const & other )
   noexcept
      : object_( other.get() ) {
      acquire();
   }
   template< typename U >
      requires std::convertible_to< U *, T * > Ptr( Ptr< U > && other )
   noexcept
      : object_( other.release() ) {}
   ~Ptr() {
      if ( object_ ) {
         object_->referenceDrop();
      }
   }

   Ptr & operator=( Ptr other ) noexcept {
      std::swap( object_, other.object_ );
      return *this;
   }

   T * get() const noexcept { return object_; }
   T & operator*() const noexcept { return *object_; }
   T * operator->() const noexcept { return object_; }
   explicit operator bool() const noexcept { return object_ != nullptr; }

   // Releases the pointer without dropping its count, which the caller then owns.
   T * release() noexcept { return std::exchange( object_, nullptr ); }

   friend bool operator==( Ptr const & a, Ptr const & b ) noexcept {
      return a.object_ == b.object_;
   }
   friend bool operator==( Ptr const & a, std::nullptr_t ) noexcept { return !a.object_; }

private:
   void acquire() noexcept {
      if ( object_ ) {
         object_->referenceAdd();
      }
   }

   T * object_ = nullptr;
};

} // namespace Vorn
