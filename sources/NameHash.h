// Hashed collections of names that somebody else chose.

#pragma once

#include "TrafficPolicy/platform/vorn/String.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace tpcli {

// Under the process's secret numbers, which std::hash has none of: names that collide make a
// standard collection slow.
struct NameHash {
   // Not noexcept: then the collections keep the hashes, and compare few names.
   size_t operator()( std::string_view name ) const { return Vorn::String::hashOf( name ); }
};

// The names are stored elsewhere.
using NameSet = std::unordered_set< std::string_view, NameHash >;
template< typename Value >
using NameMultimap = std::unordered_multimap< std::string_view, Value, NameHash >;

} // namespace tpcli
