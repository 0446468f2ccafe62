// The policy views: `show traffic-policy cpu` and `show traffic-policy interface`.

#pragma once

#include "TrafficPolicy/views/Selection.h"

namespace TrafficPolicyCli {

struct PolicyViewOptions {
   bool errors;               // installation errors in place of the rules
   bool countersPerInterface; // byte counts beside the packet counts of named counters
   bool allVrfs;              // a policy is configured for "vrf all" on the CPU
};

// Writes the view of the binding's side (CpuBinding, InterfaceBinding) to the descriptor.
// Format: 1 text, 2 JSON. Throws std::system_error when the descriptor does not take the output,
// wendo::SigIntException when the user interrupts it.
template< typename Binding >
void renderPolicies( unsigned fd, unsigned format, Selection const & selection,
                     PolicyViewOptions const & options );

} // namespace TrafficPolicyCli
