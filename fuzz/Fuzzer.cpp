// The fuzzer's way into the target that $TP_FUZZ_TARGET names.

#include "fuzz/Targets.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

fuzz::Target const & wanted() {
   char const * const name = std::getenv( "TP_FUZZ_TARGET" );
   auto const * const target =
      std::ranges::find( fuzz::targets, name ? name : "", &fuzz::Target::name );
   if ( target == std::end( fuzz::targets ) ) {
      std::abort();
   }
   return *target;
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the name that fuzzers call.
extern "C" int LLVMFuzzerTestOneInput( uint8_t const * bytes, size_t size ) {
   static fuzz::Target const & target = wanted();
   target.run( { reinterpret_cast< char const * >( bytes ), size } );
   return 0;
}
