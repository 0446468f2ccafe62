// The number ranges of match conditions.

#pragma once

#include "TrafficPolicy/platform/vorn/Hash.h"

#include <compare>
#include <cstdint>

namespace Classification {

// From low to high, both inclusive; equal bounds stand for one value. Ordered by low, then high.
struct NumericalRange {
   uint32_t low = 0;
   uint32_t high = 0;

   uint32_t hash() const { return Vorn::hashMix( Vorn::hashMix( low ) ^ high ); }
   friend auto operator<=>( NumericalRange const &, NumericalRange const & ) = default;
};

// Each kind has its own value space; a range of one kind never stands for one of another.
struct PortRange : NumericalRange {};           // TCP and UDP ports
struct TtlRange : NumericalRange {};            // TTL, hop limit
struct DscpRange : NumericalRange {};           // DSCP code points (RFC 2474)
struct PacketLengthRange : NumericalRange {};   // IP packet length in bytes
struct FragmentOffsetRange : NumericalRange {}; // fragment offset
struct IcmpTypeRange : NumericalRange {};       // ICMP types
struct IcmpCodeRange : NumericalRange {};       // ICMP codes of a type
struct ProtocolRange : NumericalRange {};       // IP protocol numbers

} // namespace Classification
