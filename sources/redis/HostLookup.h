// The address of a host.

#pragma once

#include <chrono>
#include <string>

namespace tpcli {

struct HostAddress {
   std::string text;  // numeric; IPv4 where the host has both
   std::string error; // why there is none
};

// The resolver blocks, so that it runs in a thread of its own for a host that is no address, and is
// left behind when the time is up. Throws SigIntException.
HostAddress lookUpHost( std::string const & host, std::chrono::steady_clock::time_point deadline );

} // namespace tpcli
