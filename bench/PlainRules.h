// The benchmark's rules as plain structs in one array: what the policy is built from, and what the
// reference writer writes without any lookup.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Bench {

struct Prefix {
   uint32_t address = 0; // host byte order
   uint8_t length = 0;   // 0: any address
};

struct Ports {
   uint16_t low = 0;
   uint16_t high = 65535;

   bool any() const { return low == 0 && high == 65535; }
};

// What a packet filter matches.
struct Filter {
   Prefix source;
   Prefix destination;
   Ports sourcePorts;
   Ports destinationPorts;
   uint16_t tcpFlags = 0; // the record's bits; 0: no condition
   uint8_t protocol = 0;
   bool anyProtocol = true;
};

// What a rule does, in the order in which the rules take turns.
enum class Actions : uint8_t {
   dropCount,
   countPermitted,
   dropLogDenied,
   policeCount,
   setTrafficClass
};

struct PlainRule {
   std::array< char, 12 > nameText;
   uint8_t nameSize;
   Actions actions;
   uint8_t trafficClass;
   bool dscp; // matches DSCP 46 and 8 to 14
   Filter filter;
   uint32_t policeRate; // kbps
   uint64_t packets;

   std::string_view name() const { return { nameText.data(), nameSize }; }
};

// Reads a filter set: lines of source prefix, destination prefix, source ports, destination ports,
// protocol/mask and TCP flags/mask. Throws std::runtime_error for a file without filters.
std::vector< Filter > readFilters( std::string const & path );

// Makes this many rules, cycling through the filters.
std::vector< PlainRule > makeRules( std::vector< Filter > const & filters, size_t count );

} // namespace Bench
