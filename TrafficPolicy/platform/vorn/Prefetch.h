// Asking for memory ahead of its use.

#pragma once

namespace Vorn {

// Asks for the cache line at the address, which may be null or not there at all. The assembly is an
// effect in the compiler's eyes: a function that only asks ahead has none otherwise, and GCC drops
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

} // namespace Vorn
