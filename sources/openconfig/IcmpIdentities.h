// The ICMP types and codes that OpenConfig's models name, with IANA's numbers.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tpcli {

// The number that an identity, or a number, of an ICMPv4 or ICMPv6 type or code stands for.
std::optional< uint8_t > icmpType( bool isIp6, std::string_view text );
std::optional< uint8_t > icmpCode( bool isIp6, std::string_view text );

} // namespace tpcli
