// PolicyMap::ClassMapMatchOption: the address family of a rule.

#pragma once

#include "TrafficPolicy/platform/values/PlainText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <ostream>

namespace PolicyMap {

// Other values exist in the platform; they have no name here.
enum class ClassMapMatchOption : uint32_t { ipv4 = 0, ipv6 = 1, mac = 2, mpls = 3 };

// The family's name; empty for a value without one.
inline wendo::PlainText const & matchOptionName( ClassMapMatchOption option ) {
   static constexpr wendo::PlainText names[] = { "ipv4", "ipv6", "mac", "mpls", "" };
   return names[std::min< size_t >( static_cast< uint32_t >( option ), std::size( names ) - 1 )];
}

inline std::ostream & operator<<( std::ostream & out, ClassMapMatchOption option ) {
   wendo::PlainText const & name = matchOptionName( option );
   return name.empty() ? out << static_cast< uint32_t >( option ) : out << name.view();
}

} // namespace PolicyMap
