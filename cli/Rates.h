// The rates of rules and counters between two readings of a source.

#pragma once

#include "sources/State.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tpcli {

struct Rate {
   Vorn::String name;
   bool isRule = false;             // it counts for itself; else a named counter
   std::optional< double > packets; // a second; none where it was made anew or went backwards
   std::optional< double > bits;    // a second; none also where bytes are not counted
};

struct PolicyRates {
   Vorn::String name;
   std::vector< Rate > rates; // the busiest first, those without a rate last
};

// Of the policy, or of all that have a status where it is empty. Rules and counters are those that
// the counter view has.
std::vector< PolicyRates > ratesOf( State const & before, State const & now, double seconds,
                                    std::string_view policy );

} // namespace tpcli
