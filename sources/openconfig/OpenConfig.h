// OpenConfig documents: the ACL sets, where they are bound, and their counts.

#pragma once

#include "sources/Source.h"
#include "sources/json/JsonTree.h"

#include <string>
#include <string_view>

namespace tpcli {

// Whether a top member of this name makes a document one of OpenConfig.
bool isOpenConfigTop( std::string_view name );
// Those names, for an error.
std::string openConfigTops();

// Throws FileError.
void readOpenConfig( JsonTree const & tree, Reading & reading );

} // namespace tpcli
