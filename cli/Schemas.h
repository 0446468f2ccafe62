// The JSON Schemas of the program's files and replies, as docs/schemas has them.

#pragma once

#include <string_view>
#include <vector>

namespace tpcli {

std::vector< std::string_view > schemaNames();

// Throws UsageError when no schema has the name.
std::string_view schemaText( std::string_view name );

} // namespace tpcli
