// Notes: what a source says and the records cannot hold.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

using Notes = std::vector< std::string >;

// Adds "PLACE: TEXT", control characters of names escaped so that it stays one line.
void addNote( Notes & notes, std::string_view place, std::string_view text );

} // namespace tpcli
