// An array of handles indexed by rule number.

#pragma once

#include "TrafficPolicy/platform/vorn/Assert.h"
#include "TrafficPolicy/platform/vorn/Prefetch.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace Vorn {

// The most rules that a policy may have; growing an array beyond it is a broken invariant.
inline constexpr size_t rulesMax = 2'003'003;

template< typename Value >
class IndexedArray {
public:
   using KeyType = unsigned;
   using ValueType = Value;

   // Visits the slots that are not empty, by ascending index. Checked: an ended one, one that is
   // older than the last clear() and, in an erasure, one of another array fails the assertion
   // "iter_".
   class Iterator {
   public:
      using value_type = Value;
      using difference_type = ptrdiff_t;
      using reference = Value const &;
      using pointer = Value const *;

      Iterator() = default;

      unsigned index() const {
         check();
         return static_cast< unsigned >( at_ );
      }
      Value const & operator*() const {
         check();
         return array_->slots_[at_];
      }
      Iterator & operator++() {
         check();
         at_ = array_->heldFrom( at_ + 1 );
         return *this;
      }
      Iterator operator++( int ) {
         Iterator before = *this;
         ++*this;
         return before;
      }
      friend bool operator==( Iterator const & a, Iterator const & b ) { return a.at_ == b.at_; }

   private:
      friend class IndexedArray;
      Iterator( IndexedArray const * array, size_t at )
         : array_( array )
         , at_( at )
         , generation_( array->generation_ ) {}
      bool isValid() const {
         return array_ && generation_ == array_->generation_ && at_ < array_->slots_.size();
      }
      void check() const {
         bool const iter_ = isValid();
         VORN_ASSERT( iter_ );
      }
      IndexedArray const * array_ = nullptr;
      size_t at_ = 0;
      uint32_t generation_ = 0;
   };

   // Reads the slots in ascending order and prefetches the records of later ones, and what they
   // point to up to this step (Prefetch.h). The array must not change while the cursor exists.
   template< unsigned steps >
   class Cursor {
   public:
      explicit Cursor( IndexedArray const & array )
         : slots_( array.slots_ ) {}

      // The record in the slot, or null.
      [[gnu::always_inline]] auto const * operator[]( unsigned index ) const {
         using Record = typename Value::Element;
         if ( size_t{ index } + prefetchDistance( steps ) < slots_.size() ) [[likely]] {
            prefetchAhead< Record, steps >(
               [&]( uint32_t distance ) { return slots_[index + distance].get(); } );
         }
         return index < slots_.size() ? slots_[index].get() : nullptr;
      }

   private:
      std::span< Value const > slots_;
   };

   // The number of slots up to the last one in use, empty ones included.
   size_t size() const { return slots_.size(); }
   bool empty() const { return slots_.empty(); }

   // The value at the index; empty past the end.
   Value const & at( unsigned index ) const {
      return index < slots_.size() ? slots_[index] : nothing_;
   }
   // Grows as needed; asserts that the index is below rulesMax. The value may be an element of the
   // array.
   void set( unsigned index, Value const & value ) {
      if ( index == slots_.size() && index < slots_.capacity() && index < rulesMax ) {
         slots_.push_back( value ); // the usual way: reserved, filled in order
      } else if ( index < slots_.size() ) {
         slots_[index] = value;
      } else {
         grow( uint64_t{ index } + 1, value );
      }
   }
   // Reserves room for this many entries, so that filling the array copies nothing.
   void reserve( size_t entries ) { slots_.reserve( entries < rulesMax ? entries : rulesMax ); }
   // Empties the slot.
   void erase( unsigned index ) {
      if ( index < slots_.size() ) {
         slots_[index] = Value();
      }
   }
   void erase( Iterator const & where ) {
      bool const iter_ = where.array_ == this && where.isValid();
      VORN_ASSERT( iter_ );
      erase( where.index() );
   }
   void clear() {
      slots_.clear();
      ++generation_;
   }

   Iterator begin() const { return { this, heldFrom( 0 ) }; }
   Iterator end() const { return { this, slots_.size() }; }

private:
   // The new last slot gets the value.
   [[gnu::noinline]] void grow( uint64_t newEntries, Value last ) {
      VORN_ASSERT( newEntries < 2003004 );
      slots_.resize( static_cast< size_t >( newEntries ) );
      slots_.back() = std::move( last );
   }
   size_t heldFrom( size_t at ) const {
      while ( at < slots_.size() && !slots_[at] ) {
         ++at;
      }
      return at;
   }

   static inline Value const nothing_{};

   std::vector< Value > slots_;
   uint32_t generation_ = 0; // counts clears
};

} // namespace Vorn
