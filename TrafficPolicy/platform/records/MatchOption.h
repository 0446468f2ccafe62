// PolicyMap::ClassMapMatchOption: the address family of a rule.

#pragma once

#include "TrafficPolicy/platform/values/EnumNames.h"

#include <cstdint>
#include <ostream>

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

inline std::ostream & operator<<( std::ostream & out, ClassMapMatchOption option ) {
   wendo::PlainText const & name = matchOptionName( option );
   return name.empty() ? out << static_cast< uint32_t >( option ) : out << name.view();
}

} // namespace PolicyMap
