// Asking for memory ahead of its use.

#pragma once

namespace Vorn {

// Asks for the cache line at the address, which may be null or not there at all. The empty assembly
// is an effect in the compiler's eyes: a function that only asks ahead has none otherwise, and GCC
// drops the calls of it without a word.
inline void prefetch( void const * address ) {
   __builtin_prefetch( address );
   asm volatile( "" );
}

} // namespace Vorn
