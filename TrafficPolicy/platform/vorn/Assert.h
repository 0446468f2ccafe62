// Assertions that are active in every build: a broken invariant ends the process rather than show
// wrong data.

#pragma once

#include "TrafficPolicy/platform/Export.h"

namespace Vorn {

// Prints file, line, function and the expression's text on standard error, then aborts.
[[noreturn]] TRAFFIC_POLICY_API void assertionFailed( char const * expression, char const * file,
                                                      int line, char const * function );

} // namespace Vorn

// A macro, because the message has the expression's source text.
#define VORN_ASSERT( expression )                                                                  \
   ( static_cast< bool >( expression )                                                             \
        ? static_cast< void >( 0 )                                                                 \
        : ::Vorn::assertionFailed( #expression, __FILE__, __LINE__, __PRETTY_FUNCTION__ ) )
