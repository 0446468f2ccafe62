// Prefetching: loading records into the cache before a walk reaches them.
//
// A walk over records follows pointers, and each load must arrive before the next pointer can be
// followed. So a record class declares what it points to, in steps, and the cursors of the
// collections take a step for each record that they will reach some entries later:
//
//    static constexpr unsigned prefetchSteps = 2;
//    void prefetch( unsigned step ) const; // 1: what its members point to; 2: what that points to
//
// Engine, views and counters walk with cursors and contain no prefetch.

#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace Vorn {

// Prefetches the cache line at the address, which may be null or invalid. The assembly is a side
// effect: GCC drops calls of a function without one, such as a function that only prefetches. For
// i686 GCC emits no prefetch at all; the instruction works there too, as a no-op on the oldest
// processors.
inline void prefetch( void const * address ) {
#ifdef __i386__
   asm volatile( "prefetcht0 (%0)" : : "r"( address ) );
#else
   __builtin_prefetch( address );
   asm volatile( "" );
#endif
}

// Prefetches all lines of an object.
template< typename T >
inline void prefetchWhole( T const & object ) {
   constexpr size_t line = 64; // bytes, as on all common processors; no more than a hint
   for ( size_t at = 0; at < sizeof( T ); at += line ) {
      Vorn::prefetch( reinterpret_cast< char const * >( &object ) + at );
   }
}

// Entries between one step and the next: enough for memory to arrive, few enough for it to be still
// in the cache.
inline constexpr uint32_t prefetchStride = 4;

// The steps that a record class declares; 0 when only the record itself is read.
template< typename Record >
constexpr unsigned prefetchStepsOf() {
   if constexpr ( requires { Record::prefetchSteps; } ) {
      return Record::prefetchSteps;
   } else {
      return 0;
   }
}

// How many entries ahead the record itself is prefetched, before so many steps.
inline constexpr uint32_t prefetchDistance( unsigned steps ) {
   return ( steps + 1 ) * prefetchStride;
}

// Takes each of the steps for the record at the step's distance: recordAhead( n ) is the record n
// entries ahead, which may be null; there are at least prefetchDistance entries ahead.
template< typename Record, unsigned steps, typename RecordAhead >
[[gnu::always_inline]] inline void prefetchAhead( RecordAhead const & recordAhead ) {
   Vorn::prefetch( recordAhead( prefetchDistance( steps ) ) );
   if constexpr ( steps > 0 ) {
      auto const takeStep = [&]( unsigned step ) {
         Record const * record = recordAhead( prefetchDistance( steps ) - step * prefetchStride );
         if ( record ) {
            record->prefetch( step );
         }
      };
      [&]< unsigned... before >( std::integer_sequence< unsigned, before... > ) {
         ( takeStep( before + 1 ), ... );
      }
      ( std::make_integer_sequence< unsigned, steps >() );
   }
}

} // namespace Vorn
