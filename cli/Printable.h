// Texts that a terminal prints and does not obey.

#pragma once

#include <string>
#include <string_view>

namespace tpcli {

// The text with control characters, and bytes that are no UTF-8, as a C string would have them: \n,
// \r, \t, else \xNN. All else, a backslash too, is as it is.
std::string printable( std::string_view text );

} // namespace tpcli
