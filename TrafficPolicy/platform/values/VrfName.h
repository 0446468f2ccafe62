// L3::VrfName: the name of a VRF.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/String.h"

#include <compare>
#include <iosfwd>

namespace L3 {

// A bounded string, compared and ordered as one.
class TRAFFIC_POLICY_API VrfName {
public:
   static constexpr size_t maxLength = 100; // bytes

   VrfName() = default;
   // Throws std::length_error for a name that is longer than maxLength.
   explicit VrfName( Vorn::String const & value );

   Vorn::String const & string() const { return value_; }
   uint32_t hash() const { return value_.hash(); }

   friend bool operator==( VrfName const &, VrfName const & ) = default;
   friend auto operator<=>( VrfName const &, VrfName const & ) = default;
   TRAFFIC_POLICY_API friend std::ostream & operator<<( std::ostream & out, VrfName const & vrf );

private:
   Vorn::String value_;
};

} // namespace L3
