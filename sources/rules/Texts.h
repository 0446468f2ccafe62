// Values as switches write them in texts.

#pragma once

#include "TrafficPolicy/platform/records/MatchOption.h"
#include "TrafficPolicy/platform/values/IpGenPrefix.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace tpcli {

// A whole number up to the maximum, decimal, or hexadecimal behind "0x". Nothing for another text.
std::optional< uint64_t > parseNumber( std::string_view text, uint64_t maximum );

// A prefix of the family, IPv4 or IPv6. Bits behind the length are cleared; an address without a
// length is a whole prefix. Nothing for another text.
std::optional< Pelx::IpGenPrefix > parsePrefix( std::string_view text,
                                                PolicyMap::ClassMapMatchOption family );

} // namespace tpcli
