// A hashed map and a hashed set that iterate in insertion order.

#pragma once

#include "TrafficPolicy/platform/vorn/HashTable.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace Vorn {

template< typename Key, typename Value >
struct HashMapEntry {
   Key key;
   Value value;

   // For listing entries by ascending key.
   friend bool operator<( HashMapEntry const & a, HashMapEntry const & b ) { return a.key < b.key; }
};

struct HashMapKeyOf {
   template< typename Entry >
   auto const & operator()( Entry const & entry ) const {
      return entry.key;
   }
};

template< typename Key, typename Value >
class HashMap : public HashTable< HashMapEntry< Key, Value >, HashMapKeyOf > {
   using Table = HashTable< HashMapEntry< Key, Value >, HashMapKeyOf >;

public:
   using KeyType = Key;
   using ValueType = Value;

   // Finds keys that come in about the map's own order without hashing them: a search tries the
   // entry at the given distance after the last one found, then looks the key up. The map must not
   // change while the cursor exists.
   class Cursor {
   public:
      explicit Cursor( HashMap const & map )
         : map_( map )
         , entries_( map.slots() )
         , dense_( entries_.size() == map.size() ) {}
      // The key's value, or null.
      template< typename Lookup >
      Value const * find( Lookup const & key, uint32_t distance = 1 ) {
         size_t const near = size_t{ next_ } - 1 + distance;
         if ( isLive( near ) && entries_[near].key == key ) {
            next_ = static_cast< uint32_t >( near + 1 );
            return &entries_[near].value;
         }
         uint32_t const at = map_.position( key );
         if ( at == Table::none ) {
            return nullptr;
         }
         next_ = at + 1;
         return &map_.entry( at ).value;
      }
      // The entry after the last one found, or null at the end.
      HashMapEntry< Key, Value > const * next() {
         while ( next_ < entries_.size() ) {
            if ( isLive( next_++ ) ) {
               return &entries_[next_ - 1];
            }
         }
         return nullptr;
      }
      // The value at this distance after the last one found, or null.
      Value const * ahead( uint32_t distance ) const {
         size_t const at = size_t{ next_ } - 1 + distance;
         return isLive( at ) ? &entries_[at].value : nullptr;
      }

      // Prefetches the records of later entries (Prefetch.h), each step so many entries earlier
      // than usual. Not near the end, nor in a map with deleted entries: they are not worth a test
      // per entry.
      [[gnu::always_inline]] void prefetchRecords( uint32_t earlier = 0 ) const {
         using Record = typename Value::Element;
         constexpr unsigned steps = prefetchStepsOf< Record >();
         size_t const from = size_t{ next_ } - 1 + earlier;
         if ( from + prefetchDistance( steps ) < entries_.size() && dense_ ) [[likely]] {
            prefetchAhead< Record, steps >(
               [&]( uint32_t distance ) { return entries_[from + distance].value.get(); } );
         }
      }

   private:
      bool isLive( size_t at ) const {
         return at < entries_.size()
                && ( dense_ || map_.Table::isLive( static_cast< uint32_t >( at ) ) );
      }

      HashMap const & map_;
      std::span< HashMapEntry< Key, Value > const > entries_; // deleted ones included
      bool dense_;
      uint32_t next_ = 0;
   };

   // A cursor over records that prefetches, for a walk that reads every record.
   class AheadCursor : public Cursor {
   public:
      using Cursor::Cursor;

      template< typename Lookup >
      Value const * find( Lookup const & key ) {
         this->prefetchRecords();
         return Cursor::find( key );
      }
      HashMapEntry< Key, Value > const * next() {
         this->prefetchRecords();
         return Cursor::next();
      }
   };

   // The key's value, or null.
   template< typename Lookup >
   Value const * lookup( Lookup const & key ) const {
      uint32_t const at = this->position( key );
      return at == Table::none ? nullptr : &this->entry( at ).value;
   }
   template< typename Lookup >
   Value * lookup( Lookup const & key ) {
      uint32_t const at = this->position( key );
      return at == Table::none ? nullptr : &this->entry( at ).value;
   }

   // Inserts, or overwrites the value of an existing entry, which keeps its position. True when it
   // was inserted.
   bool set( Key const & key, Value value ) { return setFor( key, std::move( value ) ); }
   // The same by another form of the key, which is converted to insert it.
   template< typename Lookup >
   bool setFor( Lookup const & key, Value value ) {
      if ( Value * present = lookup( key ) ) {
         *present = std::move( value );
         return false;
      }
      this->append( Key( key ), std::move( value ) );
      return true;
   }
};

// Visits the entries of a map of records, for a walk that looks up or sets an entry of another map
// for each of them: the other map's index is prefetched. keyOf( record ) makes the key there of a
// record that is not null; visit( entry ) may change the other map.
template< typename Records, typename Other, typename KeyOf, typename Visit >
void forEachWithin( Records const & records, Other const & other, KeyOf const & keyOf,
                    Visit const & visit ) {
   typename Records::Cursor at( records );
   for ( ;; ) {
      at.prefetchRecords( prefetchStride );
      auto const * entry = at.next();
      if ( !entry ) {
         return;
      }
      // A stride later than what the key is made of.
      if ( auto const * record = at.ahead( prefetchStride ); record && *record ) {
         other.prefetch( keyOf( **record ) );
      }
      visit( *entry );
   }
}

struct HashSetKeyOf {
   template< typename Entry >
   Entry const & operator()( Entry const & entry ) const {
      return entry;
   }
};

template< typename Key >
class HashSet : public HashTable< Key, HashSetKeyOf > {
public:
   using KeyType = Key;

   // True when the key was not in the set.
   bool insert( Key const & key ) {
      if ( this->contains( key ) ) {
         return false;
      }
      this->append( key );
      return true;
   }
};

} // namespace Vorn
