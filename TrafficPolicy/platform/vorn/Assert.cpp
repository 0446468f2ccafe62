#include "TrafficPolicy/platform/vorn/Assert.h"

#include <cstdio>
#include <cstdlib>

namespace Vorn {

void assertionFailed( char const * expression, char const * file, int line,
                      char const * function ) {
   std::fprintf( stderr, "%s:%d: %s: Assertion `%s' failed.\n", file, line, function, expression );
   std::abort();
}

} // namespace Vorn
