// PolicyMap::ClassMapMatchOption: the address family of a rule.

#pragma once

#include <cstdint>
#include <ostream>
#include <string_view>

namespace PolicyMap {

// Other values exist in the platform; they have no name here.
enum class ClassMapMatchOption : uint32_t { ipv4 = 0, ipv6 = 1, mac = 2, mpls = 3 };

// The family's name; empty for a value without one.
constexpr std::string_view matchOptionName( ClassMapMatchOption option ) {
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
   return "";
}

inline std::ostream & operator<<( std::ostream & out, ClassMapMatchOption option ) {
   std::string_view const name = matchOptionName( option );
   return name.empty() ? out << static_cast< uint32_t >( option ) : out << name;
}

} // namespace PolicyMap
