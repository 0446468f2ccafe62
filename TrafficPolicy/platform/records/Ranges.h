// The number ranges of match conditions.

#pragma once

#include "TrafficPolicy/platform/vorn/Hash.h"

#include <compare>
#include <cstdint>

namespace Classification {

// From low to high, both inclusive; equal bounds mean one value. Ordered by low, then high.
struct NumericalRange {
   uint32_t low = 0;
   uint32_t high = 0;

   uint32_t hash() const { return Vorn::hashOfWords< 2 >( { low, high } ); }
   friend auto operator<=>( NumericalRange const &, NumericalRange const & ) = default;
};

// A type for each number space, so that ranges of two spaces do not mix.
struct PortRange : NumericalRange {};           // TCP and UDP ports, 0 to 65535
struct TtlRange : NumericalRange {};            // TTL (IPv4), hop limit (IPv6), 0 to 255
struct DscpRange : NumericalRange {};           // DSCP code points (RFC 2474), 0 to 63
struct PacketLengthRange : NumericalRange {};   // IP packet length in bytes
struct FragmentOffsetRange : NumericalRange {}; // fragment offset
struct IcmpTypeRange : NumericalRange {};       // ICMP types (RFC 792, RFC 4443), 0 to 255
struct IcmpCodeRange : NumericalRange {};       // ICMP codes of a type, 0 to 255
struct ProtocolRange : NumericalRange {};       // IP protocol numbers (IANA), 0 to 255

} // namespace Classification
