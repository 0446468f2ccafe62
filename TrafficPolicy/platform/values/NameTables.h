// The platform's names of numbers: DSCP code points and IP protocols.

#pragma once

#include "TrafficPolicy/platform/wendo/PlainText.h"

#include <cstdint>

namespace Names {

// All are empty for a number without a name.

// DSCP code points, from the IANA registry "Differentiated Services Field Codepoints"
// (RFC 2474, RFC 2597, RFC 3246, RFC 5865, RFC 8622).
wendo::PlainText const & dscp( uint32_t codePoint );

// IP protocol numbers, from the IANA registry "Assigned Internet Protocol Numbers". Each family has
// the protocols that can follow its header.
wendo::PlainText const & ipv4Protocol( uint32_t number );
wendo::PlainText const & ipv6Protocol( uint32_t number );

} // namespace Names
