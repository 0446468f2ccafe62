// What a rule of a switch matches, while its parts are found.
//
// Switches name ports, flags and ICMP types beside the protocol or without one; the records hold
// them under a protocol. So they are collected here first.

#pragma once

#include "TrafficPolicy/platform/records/MatchRecords.h"
#include "TrafficPolicy/platform/vorn/Create.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace tpcli {

namespace Protocol {
inline constexpr uint8_t icmp = 1;
inline constexpr uint8_t tcp = 6;
inline constexpr uint8_t udp = 17;
inline constexpr uint8_t icmp6 = 58;
} // namespace Protocol

class Conditions {
public:
   using Filter = Classification::StructuredFilter;

   // The ports of one side.
   struct Ports {
      std::vector< Classification::PortRange > ranges;
      std::vector< Vorn::String > sets;
   };

   // For conditions that need no protocol.
   Filter & filter() { return *filter_; }

   std::optional< uint8_t > protocol; // the one that is stated
   Ports source;
   Ports destination;

   // Bits of TcpFlagAndMask, and what states them, for a note.
   uint16_t tcpFlags = 0;
   std::string_view tcpFlagsBy;

   // What states something of ICMP; empty: nothing does. The type may be missing all the same.
   std::string_view icmpBy;
   std::optional< Classification::IcmpTypeRange > icmpType;
   std::optional< Classification::IcmpCodeRange > icmpCode;

   // The filter, with the protocols that are stated or implied: by ICMP conditions that of the
   // family, by TCP flags TCP, by ports TCP and UDP. `note` is called with what contradicts the
   // protocol.
   Vorn::Ptr< Filter const > finish( PolicyMap::ClassMapMatchOption family,
                                     std::function< void( std::string_view ) > const & note );

private:
   Vorn::Ptr< Classification::ProtoField const > field( uint8_t number, bool isIcmp ) const;

   Vorn::Ptr< Filter > filter_ = Vorn::create< Filter >();
};

} // namespace tpcli
