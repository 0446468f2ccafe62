// Strings for names that repeat, or that were read before in the same order.

#pragma once

#include "TrafficPolicy/platform/vorn/Prefetch.h"
#include "TrafficPolicy/platform/vorn/String.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tpcli {

// A few names that come again and again, such as those of a policy's counters: each is made once,
// and comparing two of them is comparing two pointers.
class RecentNames {
public:
   Vorn::String get( std::string_view text ) {
      for ( Vorn::String const & name : names_ ) {
         if ( name == text ) {
            return name;
         }
      }
      Vorn::String & place = names_[next_++ % names_.size()];
      place = Vorn::String( text );
      return place;
   }

private:
   std::array< Vorn::String, 8 > names_;
   size_t next_ = 0;
};

// Names that another collection has as keys, asked for in about its order, as rules are in the
// configuration, the status and the counter store.
template< typename Map >
class FollowedNames {
public:
   // Null: nothing to follow. The map must not change meanwhile.
   explicit FollowedNames( Map const * map ) {
      if ( map ) {
         at_ = map->begin();
         end_ = map->end();
         near_ = far_ = at_;
         for ( unsigned i = 0; i < distance; ++i ) {
            step( near_ );
            step( far_ );
            step( far_ );
         }
      }
   }
   Vorn::String get( std::string_view text ) {
      if ( at_ != end_ && at_->key == text ) {
         step( near_ );
         step( far_ );
         return ( at_++ )->key;
      }
      return { text };
   }
   // Prefetches the place where a name to come will be entered in the table, and before that the
   // name.
   void prefetch( auto const & table ) const {
      if ( far_ != end_ ) {
         Vorn::prefetch( far_->key.data() );
         table.prefetch( near_->key );
      }
   }

private:
   static constexpr unsigned distance = 8; // names

   void step( typename Map::Iterator & at ) const {
      if ( at != end_ ) {
         ++at;
      }
   }

   typename Map::Iterator at_;
   typename Map::Iterator near_; // so many names ahead
   typename Map::Iterator far_;  // twice as many
   typename Map::Iterator end_;
};

} // namespace tpcli
