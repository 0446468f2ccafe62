// The table under hashed maps and sets.
//
// Entries are stored in one array in insertion order, followed, once there are more than a few, by
// an open-addressing index of positions in the same block of memory. So iteration is in insertion
// order, on every run and word size, a small collection is searched without hashing, and neighbours
// in a collection are neighbours in memory. A single entry has no block: it is stored in the table
// itself, in place of the block's address, since most collections of a rule have one entry.
//
// An index slot holds a position and, in the remaining bits, a part of the hash, so that a search
// rarely touches another key's entry.
//
// Iterators are checked: an ended one, one that is older than the last deletion, and, in an
// erasure, one of another table fails the assertion "iter_". Insertion keeps iterators valid
// (unless it also compacts deleted entries), but not references to entries: those are valid until
// the table changes or moves. A key or value that is inserted may refer into the table itself.

#pragma once

#include "TrafficPolicy/platform/vorn/Assert.h"
#include "TrafficPolicy/platform/vorn/Hash.h"
#include "TrafficPolicy/platform/vorn/Memory.h"
#include "TrafficPolicy/platform/vorn/Prefetch.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <utility>

namespace Vorn {

// Entry is a map's pair or a set's key; KeyOf gives the key of an entry.
template< typename Entry, typename KeyOf >
class HashTable {
public:
   class Iterator {
   public:
      using value_type = Entry;
      using difference_type = ptrdiff_t;
      using reference = Entry const &;
      using pointer = Entry const *;

      Iterator() = default;

      Entry const & operator*() const {
         VORN_ASSERT( iter_ );
         return iter_.table->entry( iter_.at );
      }
      Entry const * operator->() const { return &**this; }
      Iterator & operator++() {
         VORN_ASSERT( iter_ );
         iter_.at = iter_.table->liveFrom( iter_.at + 1 );
         return *this;
      }
      Iterator operator++( int ) {
         Iterator before = *this;
         ++*this;
         return before;
      }
      friend bool operator==( Iterator const & a, Iterator const & b ) {
         return a.atEnd() ? b.atEnd() : !b.atEnd() && a.iter_.at == b.iter_.at;
      }

   private:
      friend class HashTable;
      struct Position {
         HashTable const * table = nullptr;
         uint32_t at = 0;
         uint32_t generation = 0;
         explicit operator bool() const {
            return table && generation == table->generation() && at < table->used();
         }
      };
      bool atEnd() const { return !iter_.table || iter_.at >= iter_.table->used(); }
      Position iter_;
   };

   HashTable() noexcept = default;
   HashTable( HashTable const & ) = delete;
   HashTable( HashTable && other ) noexcept { take( other ); }
   HashTable & operator=( HashTable const & ) = delete;
   HashTable & operator=( HashTable && other ) noexcept {
      if ( this != &other ) {
         destroy();
         take( other );
      }
      return *this;
   }
   ~HashTable() { destroy(); }

   size_t size() const { return inBlock() ? block()->live : used(); }
   bool empty() const { return !( state_ & ( blockBit | oneBit ) ) || size() == 0; }
   explicit operator bool() const { return !empty(); }

   // The only entry. Asserts that there is exactly one.
   Entry const & only() const {
      VORN_ASSERT( size() == 1 );
      return entry( liveFrom( 0 ) );
   }

   Iterator begin() const { return iterator( liveFrom( 0 ) ); }
   Iterator end() const { return iterator( used() ); }

   // An iterator at the entry, or end().
   template< typename Lookup >
   Iterator find( Lookup const & key ) const {
      uint32_t const at = position( key );
      return at == none ? end() : iterator( at );
   }
   template< typename Lookup >
   bool contains( Lookup const & key ) const {
      return position( key ) != none;
   }

   // Reserves room for this many entries in total.
   void reserve( size_t entries ) {
      if ( entries > capacity() ) {
         regrow( static_cast< uint32_t >( entries ) );
      }
   }

   // Removes the key's entry. True when there was one.
   template< typename Lookup >
   bool erase( Lookup const & key ) {
      uint32_t const at = position( key );
      if ( at != none ) {
         eraseAt( at );
      }
      return at != none;
   }
   void erase( Iterator const & where ) {
      bool const iter_ = where.iter_.table == this && where.iter_;
      VORN_ASSERT( iter_ );
      eraseAt( where.iter_.at );
   }

   void clear() {
      uint32_t const next = generation() + 1;
      destroy();
      state_ = next << generationShift;
   }

   // Prefetches the entries, where they have a block.
   void prefetch() const {
      if ( inBlock() ) {
         Vorn::prefetch( block() );
      }
   }
   // Prefetches the index slot where a search for the key begins.
   template< typename Lookup >
   void prefetch( Lookup const & key ) const {
      if ( inBlock() && block()->slots ) {
         Vorn::prefetch( index( block() ) + ( hashOf( key ) & ( block()->slots - 1 ) ) );
      }
   }

   static constexpr uint32_t none = ~uint32_t{ 0 };

protected:
   // The position of the key's entry, or none.
   template< typename Lookup >
   uint32_t position( Lookup const & key ) const {
      if ( !inBlock() ) {
         return used() && KeyOf()( *one() ) == key ? 0 : none;
      }
      Block * const block = this->block();
      Entry const * const all = entries( block );
      if ( block->slots == 0 ) {
         for ( uint32_t at = 0; at < block->used; ++at ) {
            if ( KeyOf()( all[at] ) == key ) {
               return at;
            }
         }
         return none;
      }
      uint32_t const mask = block->slots - 1;
      uint32_t const hash = hashOf( key );
      uint32_t const * slots = index( block );
      for ( uint32_t slot = hash & mask; slots[slot] != free; slot = ( slot + 1 ) & mask ) {
         uint32_t const at = slots[slot] & mask;
         if ( ( ( slots[slot] ^ hash ) & ~mask ) == 0 && isLive( at )
              && KeyOf()( all[at] ) == key ) {
            return at;
         }
      }
      return none;
   }

   // Appends an entry whose key is not in the table.
   template< typename... Arguments >
   Entry & append( Arguments &&... arguments ) {
      if ( used() < capacity() ) [[likely]] {
         return construct( std::forward< Arguments >( arguments )... );
      }
      // Made before the growth: an argument may refer into the memory that is released then.
      Entry entry{ std::forward< Arguments >( arguments )... };
      regrow( size() >= capacity() / 2 ? capacity() * 2 : capacity() );
      return construct( std::move( entry ) );
   }

   Entry const & entry( uint32_t at ) const { return first()[at]; }
   // All entries, deleted ones included, as an array that the next change of the table invalidates.
   std::span< Entry const > slots() const { return { first(), used() }; }
   bool isLive( uint32_t at ) const {
      return !inBlock() || block()->live == block()->used || !block()->slots
             || !( deadBits( block() )[at / 32] >> ( at % 32 ) & 1 );
   }
   Entry & entry( uint32_t at ) { return first()[at]; }
   Iterator iterator( uint32_t at ) const {
      Iterator result;
      result.iter_ = { this, at, generation() };
      return result;
   }

private:
   struct Block {
      uint32_t capacity;
      uint32_t slots; // a power of two, or 0 while the table is small enough to be searched
      uint32_t used;  // entries in the array, dead ones included
      uint32_t live;
      uint32_t generation; // counts deletions
   };
   // The bits of state_: whether there is a block; without one, whether there is an entry, and the
   // generation above these two bits.
   static constexpr uint32_t blockBit = 1;
   static constexpr uint32_t oneBit = 2;
   static constexpr uint32_t generationShift = 2;

   static constexpr uint32_t searched = 8;
   static constexpr uint32_t free = ~uint32_t{ 0 };
   static constexpr size_t entriesAt =
      ( sizeof( Block ) + alignof( Entry ) - 1 ) / alignof( Entry ) * alignof( Entry );

   struct Address {
      Block * block = nullptr;
   };

   bool inBlock() const { return state_ & blockBit; }
   Block * block() const {
      Address address;
      std::memcpy( &address, memory_, sizeof address );
      return address.block;
   }
   void blockIs( Block * block ) {
      Address const address{ block };
      std::memcpy( memory_, &address, sizeof address );
      state_ = blockBit;
   }
   Entry * one() const {
      return std::launder( reinterpret_cast< Entry * >( const_cast< char * >( memory_ ) ) );
   }
   Entry * first() const { return inBlock() ? entries( block() ) : one(); }
   uint32_t used() const { return inBlock() ? block()->used : ( state_ & oneBit ) != 0; }
   uint32_t capacity() const { return inBlock() ? block()->capacity : 1; }
   uint32_t generation() const {
      return inBlock() ? block()->generation : state_ >> generationShift;
   }

   static Entry * entries( Block * block ) {
      return reinterpret_cast< Entry * >( reinterpret_cast< char * >( block ) + entriesAt );
   }
   static size_t indexAt( uint32_t capacity ) {
      return ( entriesAt + capacity * sizeof( Entry ) + 3 ) / 4 * 4;
   }
   static uint32_t * index( Block * block ) {
      return reinterpret_cast< uint32_t * >( reinterpret_cast< char * >( block )
                                             + indexAt( block->capacity ) );
   }
   // One bit per entry, after the index: set when the entry was deleted.
   static uint32_t * deadBits( Block * block ) { return index( block ) + block->slots; }

   // The bytes of a block of this capacity: entries, index and dead bits.
   static size_t blockSize( uint32_t capacity ) {
      return capacity > searched
                ? indexAt( capacity ) + ( slotsFor( capacity ) + deadWords( capacity ) ) * 4
                : entriesAt + capacity * sizeof( Entry );
   }
   static uint32_t slotsFor( uint32_t capacity ) {
      return capacity > searched ? std::bit_ceil( capacity + capacity / 2 ) : 0;
   }
   static size_t deadWords( uint32_t capacity ) { return ( size_t{ capacity } + 31 ) / 32; }

   static Block * newBlock( uint32_t capacity ) {
      uint32_t const slots = slotsFor( capacity );
      auto * const block = static_cast< Block * >( Pool::allocate( blockSize( capacity ) ) );
      *block = { capacity, slots, 0, 0, 0 };
      if ( slots ) {
         std::memset( index( block ), 0xff, slots * sizeof( uint32_t ) ); // all free
         std::memset( deadBits( block ), 0, deadWords( capacity ) * sizeof( uint32_t ) );
      }
      return block;
   }

   static void enter( Block * block, uint32_t hash, uint32_t at ) {
      uint32_t const mask = block->slots - 1;
      uint32_t * slots = index( block );
      uint32_t slot = hash & mask;
      while ( slots[slot] != free ) {
         slot = ( slot + 1 ) & mask;
      }
      slots[slot] = ( hash & ~mask ) | at;
   }

   // Constructs an entry after the last one. There is room for it.
   template< typename... Arguments >
   Entry & construct( Arguments &&... arguments ) {
      if ( !inBlock() ) {
         ::new ( static_cast< void * >( memory_ ) )
            Entry{ std::forward< Arguments >( arguments )... };
         state_ |= oneBit;
         return *one();
      }
      Block * const block = this->block();
      Entry * const place = entries( block ) + block->used;
      ::new ( static_cast< void * >( place ) ) Entry{ std::forward< Arguments >( arguments )... };
      if ( block->slots ) {
         enter( block, hashOf( KeyOf()( *place ) ), block->used );
      }
      ++block->used;
      ++block->live;
      return *place;
   }

   uint32_t liveFrom( uint32_t at ) const {
      if ( inBlock() ) {
         while ( at < block()->used && !isLive( at ) ) {
            ++at;
         }
      }
      return at;
   }

   // Moves the live entries to a block of at least this capacity.
   void regrow( uint32_t capacity ) {
      Block * const grown = newBlock( capacity );
      grown->generation = generation() + ( size() != used() );
      for ( uint32_t at = liveFrom( 0 ); at < used(); at = liveFrom( at + 1 ) ) {
         Entry & old = entry( at );
         if ( grown->slots ) {
            enter( grown, hashOf( KeyOf()( old ) ), grown->used );
         }
         ::new ( static_cast< void * >( entries( grown ) + grown->used++ ) )
            Entry( std::move( old ) );
      }
      grown->live = grown->used;
      destroy();
      blockIs( grown );
   }

   void eraseAt( uint32_t at ) {
      if ( !inBlock() ) {
         one()->~Entry();
         state_ = ( generation() + 1 ) << generationShift;
         return;
      }
      Block * const block = this->block();
      ++block->generation;
      if ( block->slots ) {
         entry( at ).~Entry();
         deadBits( block )[at / 32] |= 1u << ( at % 32 );
      } else {
         Entry * const last = entries( block ) + --block->used;
         for ( Entry * place = entries( block ) + at; place != last; ++place ) {
            *place = std::move( place[1] );
         }
         last->~Entry();
      }
      --block->live;
   }

   // Leaves the table empty, without a block and in generation 0.
   void destroy() noexcept {
      for ( uint32_t at = liveFrom( 0 ); at < used(); at = liveFrom( at + 1 ) ) {
         entry( at ).~Entry();
      }
      if ( inBlock() ) {
         Pool::release( block(), blockSize( block()->capacity ) );
      }
      state_ = 0;
   }

   // Moves the other table's content here. This table is empty.
   void take( HashTable & other ) noexcept {
      if ( other.inBlock() ) {
         blockIs( other.block() );
         other.state_ = 0;
      } else if ( other.used() ) {
         construct( std::move( *other.one() ) );
         other.destroy();
      }
   }

   // Bytes rather than a union, so that a block's address needs no more than the entry's alignment.
   alignas( Entry ) char memory_[sizeof( Entry ) > sizeof( void * ) ? sizeof( Entry )
                                                                    : sizeof( void * )] = {};
   uint32_t state_ = 0;
};

} // namespace Vorn
