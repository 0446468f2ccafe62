#include "TrafficPolicy/platform/values/Decimal.h"

namespace Decimal {

// At most three parts of eight digits: two divisions for any number of digits.
char * putLarge( char * to, uint64_t value ) {
   constexpr uint64_t part = 100'000'000;
   uint64_t const upper = value / part;
   auto const low = static_cast< uint32_t >( value % part );
   if ( upper < part ) {
      to = put( to, static_cast< uint32_t >( upper ) );
   } else {
      to = put( to, static_cast< uint32_t >( upper / part ) );
      to = putEight( to, static_cast< uint32_t >( upper % part ) );
   }
   return putEight( to, low );
}

} // namespace Decimal
