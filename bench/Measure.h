// Measures one case in rounds: the command, the copy and the reference take turns, since a
// machine's speed drifts by more than they differ. Ratios are medians of the rounds' own ratios.

#pragma once

#include "bench/Cases.h"
#include "bench/Sink.h"

#include <cstddef>
#include <cstdint>

namespace Bench {

struct Effort {
   unsigned roundsMin = 5;
   unsigned roundsMax = 301;
   double seconds = 0.5; // of rounds, for each case
};

// Times are medians in nanoseconds; what was not measured is 0.
struct Result {
   size_t rules = 0;
   uint64_t bytes = 0;
   size_t rounds = 0;
   double command = 0;
   double commandBest = 0;
   double copy = 0;
   double reference = 0;
   double toCopy = 0;      // command / copy
   double toReference = 0; // reference / command
   double firstByte = 0;
   double release = 0; // dropping the command with what it cached
   size_t peak = 0;    // bytes above the inputs
   size_t allocations = 0;
};

// Throws std::logic_error when the reference's bytes are not those of a case that has the same
// ones.
Result measure( Case const & subject, World const & world, Sink & sink, Effort const & effort );

} // namespace Bench
