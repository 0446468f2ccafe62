// The elements of a hashed collection in ascending order, without copying them.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace TrafficPolicyCli {

// Refers to the collection's elements, as pointers; must not outlive it. Most collections of a rule
// have one element, which is not sorted; up to eight are sorted on the stack.
template< typename Element >
class SortedView {
public:
   template< typename Collection >
   explicit SortedView( Collection const & collection ) {
      if ( collection.size() == 1 ) [[likely]] {
         few_[0] = &collection.only();
         end_ = begin_ + 1;
      } else {
         sort( collection );
      }
   }
   SortedView( SortedView const & ) = delete;
   SortedView & operator=( SortedView const & ) = delete;

   Element const * const * begin() const { return begin_; }
   Element const * const * end() const { return end_; }

private:
   template< typename Collection >
   [[gnu::noinline]] void sort( Collection const & collection ) {
      if ( collection.size() > few_.size() ) {
         many_.resize( collection.size() );
         begin_ = many_.data();
      }
      end_ = begin_;
      for ( Element const & element : collection ) {
         *end_++ = &element;
      }
      std::sort( begin_, end_, []( auto const * a, auto const * b ) { return *a < *b; } );
   }

   std::array< Element const *, 8 > few_;
   std::vector< Element const * > many_;
   Element const ** begin_ = few_.data();
   Element const ** end_;
};

} // namespace TrafficPolicyCli
