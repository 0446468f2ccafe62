// Pelx::IntfId: the identity of an interface.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/String.h"

#include <compare>
#include <cstdint>
#include <iosfwd>

namespace Pelx {

// Ordered as its string, byte by byte.
class TRAFFIC_POLICY_API IntfId {
public:
   IntfId() = default;
   explicit IntfId( Vorn::String const & value )
      : value_( value ) {}

   Vorn::String const & string() const { return value_; }
   uint32_t hash() const { return value_.hash(); }

   friend bool operator==( IntfId const &, IntfId const & ) = default;
   friend auto operator<=>( IntfId const &, IntfId const & ) = default;
   TRAFFIC_POLICY_API friend std::ostream & operator<<( std::ostream & out, IntfId const & intf );

private:
   Vorn::String value_;
};

} // namespace Pelx
