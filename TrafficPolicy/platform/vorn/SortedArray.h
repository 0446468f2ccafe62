// A map in ascending key order, stored in one array: for the sequence of a policy's rules, which is
// long and arrives in order, and for the few actions of a rule.
//
// Appending in key order takes constant time; insertion elsewhere moves all later entries, so a
// long one is filled in order. Any change invalidates iterators and references.

#pragma once

#include "TrafficPolicy/platform/vorn/InlineVector.h"
#include "TrafficPolicy/platform/vorn/Memory.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

namespace Vorn {

// The first inPlace entries are stored in the collection itself.
template< typename Key, typename Value, uint32_t inPlace = 0 >
class SortedArray {
public:
   using KeyType = Key;
   using ValueType = Value;
   struct Entry {
      Key key;
      Value value;
   };

   size_t size() const { return entries_.size(); }
   bool empty() const { return entries_.empty(); }
   explicit operator bool() const { return !empty(); }

   auto begin() const { return entries_.begin(); }
   auto end() const { return entries_.end(); }

   void reserve( size_t entries ) { entries_.reserve( entries ); }

   // The key's value, or null.
   Value const * lookup( Key const & key ) const {
      auto const found = lowerBound( key );
      return found != entries_.end() && found->key == key ? &found->value : nullptr;
   }

   // Inserts or overwrites. True when it was inserted.
   bool set( Key const & key, Value value ) {
      if ( entries_.empty() || entries_.back().key < key ) {
         append( Entry{ key, std::move( value ) } );
         return true;
      }
      auto const found = entries_.begin() + ( lowerBound( key ) - entries_.cbegin() );
      if ( found->key == key ) {
         found->value = std::move( value );
         return false;
      }
      entries_.insert( found, Entry{ key, std::move( value ) } );
      return true;
   }
   bool erase( Key const & key ) {
      auto const found = lowerBound( key );
      if ( found == entries_.end() || !( found->key == key ) ) {
         return false;
      }
      entries_.erase( found );
      return true;
   }
   void clear() { entries_.clear(); }

private:
   void append( Entry entry ) {
      if constexpr ( inPlace == 0 ) {
         entries_.push_back( std::move( entry ) );
      } else {
         entries_.append( std::move( entry ) );
      }
   }
   // The first entry whose key is not less.
   auto lowerBound( Key const & key ) const {
      auto first = entries_.begin();
      for ( auto left = entries_.end() - first; left > 0; ) {
         auto const half = left / 2;
         if ( first[half].key < key ) {
            first += half + 1;
            left -= half + 1;
         } else {
            left = half;
         }
      }
      return first;
   }

   template< uint32_t some >
   static auto storage() {
      if constexpr ( some == 0 ) {
         return std::type_identity< std::vector< Entry, Pool::Allocator< Entry > > >();
      } else {
         return std::type_identity< InlineVector< Entry, some > >();
      }
   }
   typename decltype( storage< inPlace >() )::type entries_;
};

} // namespace Vorn
