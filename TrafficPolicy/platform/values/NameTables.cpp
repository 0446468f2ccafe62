#include "TrafficPolicy/platform/values/NameTables.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace Names {

namespace {

// IANA "Assigned Internet Protocol Numbers", in lower case, spelt as /etc/protocols has them.
// Numbers that are unassigned, or reserved without a name, are empty.
constexpr std::array< std::string_view, 148 > protocolNames = {
   // 0
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
   "shim6", "wesp", "rohc", "ethernet", "aggfrag", "nsh", "homa", "bit-emu"
};

// IANA "Differentiated Services Field Codepoints".
constexpr struct {
   uint32_t value;
   std::string_view name;
} dscpNames[] = {
   { 0, "cs0" },   { 1, "le" },    { 8, "cs1" },   { 10, "af11" }, { 12, "af12" },
   { 14, "af13" }, { 16, "cs2" },  { 18, "af21" }, { 20, "af22" }, { 22, "af23" },
   { 24, "cs3" },  { 26, "af31" }, { 28, "af32" }, { 30, "af33" }, { 32, "cs4" },
   { 34, "af41" }, { 36, "af42" }, { 38, "af43" }, { 40, "cs5" },  { 44, "voice-admit" },
   { 46, "ef" },   { 48, "cs6" },  { 56, "cs7" },
};

constexpr uint32_t ipv6Only[] = { 0, 43, 44, 58, 59, 60, 135, 140 };
constexpr uint32_t ipv4Only[] = { 1, 2 };

template< size_t size >
std::string_view protocolExcept( uint32_t const ( &missing )[size], uint32_t number ) {
   if ( number >= protocolNames.size()
        || std::find( std::begin( missing ), std::end( missing ), number )
              != std::end( missing ) ) {
      return {};
   }
   return protocolNames[number];
}

} // namespace

std::string_view dscp( uint32_t codePoint ) {
   auto const named =
      std::find_if( std::begin( dscpNames ), std::end( dscpNames ),
                    [&]( auto const & entry ) { return entry.value == codePoint; } );
   return named == std::end( dscpNames ) ? std::string_view() : named->name;
}

std::string_view ipv4Protocol( uint32_t number ) {
   return protocolExcept( ipv6Only, number );
}

std::string_view ipv6Protocol( uint32_t number ) {
   return protocolExcept( ipv4Only, number );
}

} // namespace Names
