// The elements of a hashed collection in ascending order, without copying them.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace TrafficPolicyCli {

// Refers to the collection's elements; must not outlive it. Up to eight are sorted on the stack.
template< typename Element >
class SortedView {
public:
   // The projection gives a reference to what is listed of an element of the collection.
   template< typename Collection, typename Projection >
   SortedView( Collection const & collection, Projection const & projection ) {
      if ( collection.size() > few_.size() ) {
         many_.resize( collection.size() );
         begin_ = many_.data();
      }
      end_ = begin_;
      for ( auto const & element : collection ) {
         *end_++ = &projection( element );
      }
      if ( end_ - begin_ > 1 ) {
         std::sort( begin_, end_, []( auto const * a, auto const * b ) { return *a < *b; } );
      }
   }
   template< typename Collection >
   explicit SortedView( Collection const & collection )
      : SortedView( collection,
                    []( Element const & element ) -> Element const & { return element; } ) {}
   SortedView( SortedView const & ) = delete;
   SortedView & operator=( SortedView const & ) = delete;

   Element const * const * begin() const { return begin_; }
   Element const * const * end() const { return end_; }

private:
   std::array< Element const *, 8 > few_;
   std::vector< Element const * > many_;
   Element const ** begin_ = few_.data();
   Element const ** end_;
};

// Calls the function with each element in ascending order. Most collections of a rule have one: it
// is handed on as it stands.
template< typename Element, typename Collection, typename Function >
void forEachSorted( Collection const & collection, Function const & function ) {
   if ( collection.size() == 1 ) {
      function( *collection.begin() );
      return;
   }
   for ( Element const * element : SortedView< Element >( collection ) ) {
      function( *element );
   }
}

} // namespace TrafficPolicyCli
