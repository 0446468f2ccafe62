// A map that iterates in ascending key order: a tree, so that no order of insertion is slow.
//
// Iterators are checked as those of the hashed collections: an ended or stale one and, in an
// erasure, one of another map fails the assertion "iter_". Insertion keeps iterators valid; a
// deletion makes all of them stale.

#pragma once

#include "TrafficPolicy/platform/vorn/Assert.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

namespace Vorn {

template< typename Key, typename Value >
class OrderedMap {
   using Tree = std::map< Key, Value >;

public:
   using KeyType = Key;
   using ValueType = Value;

   class Iterator {
   public:
      using value_type = typename Tree::value_type;
      using difference_type = ptrdiff_t;
      using reference = value_type const &;
      using pointer = value_type const *;

      Iterator() = default;

      value_type const & operator*() const {
         VORN_ASSERT( iter_ );
         return *iter_.at;
      }
      value_type const * operator->() const { return &**this; }
      Iterator & operator++() {
         VORN_ASSERT( iter_ );
         ++iter_.at;
         return *this;
      }
      Iterator operator++( int ) {
         Iterator before = *this;
         ++*this;
         return before;
      }
      friend bool operator==( Iterator const & a, Iterator const & b ) {
         return a.iter_.at == b.iter_.at;
      }

   private:
      friend class OrderedMap;
      struct Position {
         OrderedMap const * map = nullptr;
         typename Tree::const_iterator at;
         uint32_t generation = 0;
         explicit operator bool() const {
            return map && generation == map->generation_ && at != map->tree_.end();
         }
      };
      Position iter_;
   };

   size_t size() const { return tree_.size(); }
   bool empty() const { return tree_.empty(); }
   explicit operator bool() const { return !empty(); }

   Iterator begin() const { return iterator( tree_.begin() ); }
   Iterator end() const { return iterator( tree_.end() ); }
   Iterator find( Key const & key ) const { return iterator( tree_.find( key ) ); }
   // The first entry whose key is greater.
   Iterator upperBound( Key const & key ) const { return iterator( tree_.upper_bound( key ) ); }
   bool contains( Key const & key ) const { return tree_.contains( key ); }

   // The key's value, or null.
   Value const * lookup( Key const & key ) const {
      auto const found = tree_.find( key );
      return found == tree_.end() ? nullptr : &found->second;
   }
   Value * lookup( Key const & key ) {
      auto const found = tree_.find( key );
      return found == tree_.end() ? nullptr : &found->second;
   }

   // Inserts or overwrites. True when it was inserted.
   bool set( Key const & key, Value value ) {
      return tree_.insert_or_assign( key, std::move( value ) ).second;
   }
   bool erase( Key const & key ) {
      bool const erased = tree_.erase( key ) != 0;
      generation_ += erased;
      return erased;
   }
   void erase( Iterator const & where ) {
      bool const iter_ = where.iter_.map == this && where.iter_;
      VORN_ASSERT( iter_ );
      tree_.erase( where.iter_.at );
      ++generation_;
   }
   void clear() {
      tree_.clear();
      ++generation_;
   }

private:
   Iterator iterator( typename Tree::const_iterator at ) const {
      Iterator result;
      result.iter_ = { this, at, generation_ };
      return result;
   }

   Tree tree_;
   uint32_t generation_ = 0;
};

} // namespace Vorn
