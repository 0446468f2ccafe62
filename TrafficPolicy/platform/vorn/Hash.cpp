#include "TrafficPolicy/platform/vorn/Hash.h"

#include <unistd.h>

#include <chrono>

namespace Vorn {

namespace {

// Numbers that differ from run to run, for a system without a source of random ones.
void guess( HashKeys & keys ) {
   auto state = static_cast< uint64_t >(
      std::chrono::high_resolution_clock::now().time_since_epoch().count() );
   state ^= uint64_t{ reinterpret_cast< uintptr_t >( &state ) } << 20;
   // SplitMix64
   auto const next = [&] {
      uint64_t number = state += 0x9E3779B97F4A7C15u;
      number = ( number ^ number >> 30 ) * 0xBF58476D1CE4E5B9u;
      number = ( number ^ number >> 27 ) * 0x94D049BB133111EBu;
      return number ^ number >> 31;
   };
   for ( uint32_t & word : keys.words ) {
      word = static_cast< uint32_t >( next() );
   }
   for ( uint64_t * key : { &keys.low, &keys.high, &keys.constant, &keys.size } ) {
      *key = next();
   }
}

HashKeys draw() noexcept {
   HashKeys keys{};
   if ( ::getentropy( &keys, sizeof keys ) != 0 ) {
      guess( keys );
   }
   return keys;
}

} // namespace

// Before the other static objects of the program, which may have names.
[[gnu::init_priority( 101 )]] HashKeys const hashKeys = draw();

} // namespace Vorn
