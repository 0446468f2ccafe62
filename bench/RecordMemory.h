// The memory of the records of a large policy, by kind.

#pragma once

#include "bench/PolicyBuilder.h"

#include <ostream>
#include <vector>

namespace Bench {

// Builds the policy and writes a line for each kind: records for each rule, bytes for each rule. In
// a process that has no other records.
void writeRecordMemory( std::ostream & out, std::vector< PlainRule > const & rules,
                        BuildOptions const & options );

} // namespace Bench
