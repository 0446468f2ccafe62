// JSON string escaping.

#pragma once

#include "TrafficPolicy/platform/wendo/PrintBuffer.h"

#include <cstddef>
#include <string_view>

namespace wendo {

// Appends the text escaped for the inside of a JSON string (RFC 8259): quote, backslash and control
// characters are escaped, other valid UTF-8 passes unchanged, and each byte that is not part of
// valid UTF-8 (RFC 3629) becomes U+FFFD. So the output is valid JSON for any text.
void appendEscaped( PrintBuffer & buffer, std::string_view text );

// The length in bytes of the UTF-8 sequence that the text begins with; 0 when it is not valid. The
// text is not empty.
size_t sequenceLength( std::string_view text );

} // namespace wendo
