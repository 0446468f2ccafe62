// Prefetching: the one place that says which memory is asked for before it is used.
//
// A walk over records finds most of them by following pointers, and what one pointer leads to must
// have arrived before the next one can be followed. So a record class says what hangs under it, in
// steps, and the cursors of the collections take a step for the records that they will reach some
// entries later:
//
//    static constexpr unsigned prefetchSteps = 2;
//    void prefetch( unsigned step ) const; // 1: what its members point to; 2: what that points to
//
// Engine, views, counters and readers walk with cursors and do not know of it.

#pragma once

#include <cstdint>
#include <utility>

namespace Vorn {

// Asks for the cache line at the address, which may be null or not there at all. The assembly is an
// effect in the compiler's eyes: a function that only prefetches has none otherwise, and GCC drops
// the calls of it without a word. For an i686 GCC makes no prefetch at all; there, too, the
// instruction is one that every processor takes, the oldest as a no-op.
inline void prefetch( void const * address ) {
#ifdef __i386__
   asm volatile( "prefetcht0 (%0)" : : "r"( address ) );
#else
   __builtin_prefetch( address );
   asm volatile( "" );
#endif
}

// Entries between one step and the next: long enough for memory to arrive, short enough for it to
// be still there.
inline constexpr uint32_t prefetchStride = 4;

// The steps that hang under a record; 0 when it is read by itself only.
template< typename Record >
constexpr unsigned prefetchStepsOf() {
   if constexpr ( requires { Record::prefetchSteps; } ) {
      return Record::prefetchSteps;
   } else {
      return 0;
   }
}

// How many entries ahead the first step is taken.
template< typename Record >
inline constexpr uint32_t prefetchDistance = ( prefetchStepsOf< Record >() + 1 ) * prefetchStride;

// Takes each step for the record that is its distance away: recordAhead( n ) is the record n
// entries ahead, which may be null; there are prefetchDistance entries.
template< typename Record, typename RecordAhead >
[[gnu::always_inline]] inline void prefetchAhead( RecordAhead const & recordAhead ) {
   Vorn::prefetch( recordAhead( prefetchDistance< Record > ) );
   if constexpr ( prefetchStepsOf< Record >() > 0 ) {
      auto const takeStep = [&]( unsigned step ) {
         Record const * record = recordAhead( prefetchDistance< Record > - step * prefetchStride );
         if ( record ) {
            record->prefetch( step );
         }
      };
      [&]< unsigned... before >( std::integer_sequence< unsigned, before... > ) {
         ( takeStep( before + 1 ), ... );
      }
      ( std::make_integer_sequence< unsigned, prefetchStepsOf< Record >() >() );
   }
}

} // namespace Vorn
