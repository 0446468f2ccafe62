// The names in a state, by what they are the names of.

#pragma once

#include "cli/CommandTable.h"
#include "sources/State.h"

#include <functional>
#include <string_view>

namespace tpcli {

using NameVisitor = std::function< void( std::string_view name ) >;

// Calls for each name of the kind, for some more than once; nothing for an argument that is no
// name. Rules are those of the policy, or of all where it is empty.
void forEachName( State const & state, Argument kind, std::string_view policy,
                  NameVisitor const & visit );

bool hasName( State const & state, Argument kind, std::string_view name );

} // namespace tpcli
