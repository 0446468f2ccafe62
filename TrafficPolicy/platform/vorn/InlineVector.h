// A vector that stores its first few elements in itself.

#pragma once

#include "TrafficPolicy/platform/vorn/Memory.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace Vorn {

// The part of std::vector that is used here. Elements move without throwing. Any change invalidates
// references and iterators.
template< typename T, uint32_t inPlace >
class InlineVector {
   static_assert( inPlace > 0 );

public:
   InlineVector() = default;
   InlineVector( InlineVector const & ) = delete;
   InlineVector & operator=( InlineVector const & ) = delete;
   ~InlineVector() {
      clear();
      release();
   }

   size_t size() const { return size_; }
   bool empty() const { return size_ == 0; }
   T const * begin() const { return first(); }
   T const * end() const { return first() + size_; }
   T * begin() { return first(); }
   T * end() { return first() + size_; }
   T const * cbegin() const { return begin(); }
   T const & back() const { return end()[-1]; }

   void append( T element ) {
      if ( size_ == capacity_ ) {
         reserve( size_t{ capacity_ } * 2 );
      }
      ::new ( static_cast< void * >( end() ) ) T( std::move( element ) );
      ++size_;
   }
   void insert( T const * where, T element ) {
      auto const at = where - begin();
      append( std::move( element ) );
      for ( T * place = end() - 1; place != begin() + at; --place ) {
         std::swap( place[-1], *place );
      }
   }
   void erase( T const * where ) {
      --size_;
      for ( T * place = begin() + ( where - begin() ); place != end(); ++place ) {
         *place = std::move( place[1] );
      }
      end()->~T();
   }
   void clear() {
      destroy();
      size_ = 0;
   }
   void reserve( size_t elements ) {
      if ( elements <= capacity_ ) {
         return;
      }
      T * const grown = static_cast< T * >( Pool::allocate( elements * sizeof( T ) ) );
      for ( uint32_t at = 0; at < size_; ++at ) {
         ::new ( static_cast< void * >( grown + at ) ) T( std::move( first()[at] ) );
      }
      destroy();
      release();
      Address const address{ grown };
      std::memcpy( memory_, &address, sizeof address );
      capacity_ = static_cast< uint32_t >( elements );
   }

private:
   struct Address {
      T * elements = nullptr;
   };

   T * first() const {
      if ( capacity_ == inPlace ) {
         return std::launder( reinterpret_cast< T * >( const_cast< char * >( memory_ ) ) );
      }
      Address address;
      std::memcpy( &address, memory_, sizeof address );
      return address.elements;
   }
   void destroy() {
      for ( T & element : *this ) {
         element.~T();
      }
   }
   void release() {
      if ( capacity_ != inPlace ) {
         Pool::release( first(), capacity_ * sizeof( T ) );
      }
   }

   alignas( T ) char memory_[inPlace * sizeof( T ) > sizeof( void * ) ? inPlace * sizeof( T )
                                                                      : sizeof( void * )];
   uint32_t size_ = 0;
   uint32_t capacity_ = inPlace;
};

} // namespace Vorn
