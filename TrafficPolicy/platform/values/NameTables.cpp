#include "TrafficPolicy/platform/values/NameTables.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>

namespace Names {

using wendo::PlainText;

namespace {

// IANA "Assigned Internet Protocol Numbers", in lower case, spelt as /etc/protocols has them.
// Numbers that are unassigned, or reserved without a name, are empty.
constexpr auto protocolNames = std::to_array< PlainText >(
   { // 0
     "hopopt", "icmp", "igmp", "ggp", "ipencap", "st", "tcp", "cbt", "egp", "igp",
     // 10
     "bbn-rcc-mon", "nvp-ii", "pup", "argus", "emcon", "xnet", "chaos", "udp", "mux", "dcn-meas",
     // 20
     "hmp", "prm", "xns-idp", "trunk-1", "trunk-2", "leaf-1", "leaf-2", "rdp", "irtp", "iso-tp4",
     // 30
     "netblt", "mfe-nsp", "merit-inp", "dccp", "3pc", "idpr", "xtp", "ddp", "idpr-cmtp", "tp++",
     // 40
     "il", "ipv6", "sdrp", "ipv6-route", "ipv6-frag", "idrp", "rsvp", "gre", "dsr", "bna",
     // 50
     "esp", "ah", "i-nlsp", "swipe", "narp", "min-ipv4", "tlsp", "skip", "ipv6-icmp", "ipv6-nonxt",
     // 60
     "ipv6-opts", "", "cftp", "", "sat-expak", "kryptolan", "rvd", "ippc", "", "sat-mon",
     // 70
     "visa", "ipcv", "cpnx", "rspf", "wsn", "pvp", "br-sat-mon", "sun-nd", "wb-mon", "wb-expak",
     // 80
     "iso-ip", "vmtp", "secure-vmtp", "vines", "iptm", "nsfnet-igp", "dgp", "tcf", "eigrp", "ospf",
     // 90
     "sprite-rpc", "larp", "mtp", "ax.25", "ipip", "micp", "scc-sp", "etherip", "encap", "",
     // 100
     "gmtp", "ifmp", "pnni", "pim", "aris", "scps", "qnx", "a/n", "ipcomp", "snp",
     // 110
     "compaq-peer", "ipx-in-ip", "vrrp", "pgm", "", "l2tp", "ddx", "iatp", "stp", "srp",
     // 120
     "uti", "smp", "sm", "ptp", "isis", "fire", "crtp", "crudp", "sscopmce", "iplt",
     // 130
     "sps", "pipe", "sctp", "fc", "rsvp-e2e-ignore", "mobility-header", "udplite", "mpls-in-ip",
     "manet", "hip",
     // 140
     "shim6", "wesp", "rohc", "ethernet", "aggfrag", "nsh", "homa", "bit-emu" } );
static_assert( protocolNames.size() == 148 );

// IANA "Differentiated Services Field Codepoints".
constexpr struct {
   size_t value;
   PlainText name;
} dscpNames[] = {
   { 0, "cs0" },   { 1, "le" },    { 8, "cs1" },   { 10, "af11" }, { 12, "af12" },
   { 14, "af13" }, { 16, "cs2" },  { 18, "af21" }, { 20, "af22" }, { 22, "af23" },
   { 24, "cs3" },  { 26, "af31" }, { 28, "af32" }, { 30, "af33" }, { 32, "cs4" },
   { 34, "af41" }, { 36, "af42" }, { 38, "af43" }, { 40, "cs5" },  { 44, "voice-admit" },
   { 46, "ef" },   { 48, "cs6" },  { 56, "cs7" },
};

// By number; the last name is empty and serves all numbers beyond the table.
template< size_t numbers >
using Table = std::array< PlainText, numbers + 1 >;

template< size_t size >
PlainText const & nameOf( std::array< PlainText, size > const & table, uint32_t number ) {
   return table[std::min< size_t >( number, size - 1 )];
}

constexpr auto byCodePoint = [] {
   Table< 64 > table;
   for ( auto const & [value, name] : dscpNames ) {
      table[value] = name;
   }
   return table;
}();

constexpr auto protocolsExcept( std::initializer_list< size_t > missing ) {
   Table< protocolNames.size() > table;
   std::copy( protocolNames.begin(), protocolNames.end(), table.begin() );
   for ( size_t const number : missing ) {
      table[number] = "";
   }
   return table;
}

constexpr auto ipv4Protocols = protocolsExcept( { 0, 43, 44, 58, 59, 60, 135, 140 } );
constexpr auto ipv6Protocols = protocolsExcept( { 1, 2 } );

} // namespace

PlainText const & dscp( uint32_t codePoint ) {
   return nameOf( byCodePoint, codePoint );
}

PlainText const & ipv4Protocol( uint32_t number ) {
   return nameOf( ipv4Protocols, number );
}

PlainText const & ipv6Protocol( uint32_t number ) {
   return nameOf( ipv6Protocols, number );
}

} // namespace Names
