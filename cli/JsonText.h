// A text as a JSON string.

#pragma once

#include <string>
#include <string_view>

namespace tpcli {

// Quoted and escaped; a byte that is no UTF-8 becomes U+FFFD.
std::string jsonText( std::string_view text );

} // namespace tpcli
