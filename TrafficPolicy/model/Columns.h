// The columns of the text views: where each kind of line begins, counted in spaces from 0.
//
// Headings begin at 0; further values of a list are aligned with its first one (ListLines).

#pragma once

#include "TrafficPolicy/model/PolicyState.h"

namespace TrafficPolicyCli::Columns {

// The step of one level; the caching gives it to every policy state.
inline constexpr unsigned step = 3;

inline constexpr unsigned list = 3;          // lists of bindings, the rule count, counters
inline constexpr unsigned rule = 6;          // "match ..."
inline constexpr unsigned namedCounters = 6; // "counter ..."

// A rule's conditions and actions.
inline unsigned details( PolicyState const & state ) {
   return state.indentCountPerLevel() + 6;
}
// One installation error.
inline unsigned errors( PolicyState const & state ) {
   return state.indentCountPerLevel() + 3;
}
// The interfaces and the total of a named counter.
inline unsigned counterDetails( PolicyState const & state ) {
   return state.indentCountPerLevel() + 3;
}

} // namespace TrafficPolicyCli::Columns
