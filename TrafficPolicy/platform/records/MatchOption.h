// PolicyMap::ClassMapMatchOption: the address family of a rule.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/values/EnumNames.h"

#include <cstdint>
#include <iosfwd>

namespace PolicyMap {

// The platform has further values, which have no name here.
enum class ClassMapMatchOption : uint32_t { ipv4 = 0, ipv6 = 1, mac = 2, mpls = 3 };

constexpr wendo::PlainText nameOf( ClassMapMatchOption option ) {
   switch ( option ) {
   case ClassMapMatchOption::ipv4:
      return "ipv4";
   case ClassMapMatchOption::ipv6:
      return "ipv6";
   case ClassMapMatchOption::mac:
      return "mac";
   case ClassMapMatchOption::mpls:
      return "mpls";
   }
   return {};
}

inline constexpr Names::EnumNames< ClassMapMatchOption, 4 > matchOptions( nameOf );

// The family's name; empty for a value without one.
inline wendo::PlainText const & matchOptionName( ClassMapMatchOption option ) {
   return matchOptions[option];
}

// The name, or the number of a value without one.
TRAFFIC_POLICY_API std::ostream & operator<<( std::ostream & out, ClassMapMatchOption option );

} // namespace PolicyMap
