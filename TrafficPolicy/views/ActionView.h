// The actions of a rule, with the counts of its count action.

#pragma once

#include "TrafficPolicy/counters/CounterLookup.h"
#include "TrafficPolicy/model/PolicyState.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace TrafficPolicyCli {

// Writes the actions of one policy's rules. Fast when all rules are visited in about the
// configuration's order; any order is correct. Must not outlive renderer and policy state.
class ActionWriter {
public:
   // showBytes adds byte counts beside the packet counts of named counters.
   ActionWriter( wendo::RendererV2 & renderer, PolicyState const & policyState, bool showBytes );

   // The actions of this class, by ascending type; nothing for a class without any. Text begins at
   // the column. Asserts that each record is of the class that its type names.
   void renderActions( Vorn::String const & className,
                       PolicyMap::ClassMapStatus const & classStatus, unsigned indent );

private:
   void renderAction( wendo::LineBegin begin, PolicyMap::ActionType type,
                      PolicyMap::Action const * action,
                      PolicyMap::ClassMapStatus const & classStatus );
   void renderPolice( wendo::LineBegin begin, PolicyMap::PoliceAction const & police );
   void renderCount( wendo::LineBegin begin, PolicyMap::CountAction const & count,
                     PolicyMap::ClassMapStatus const & classStatus );
   void renderNamedCount( wendo::LineBegin begin, Vorn::String const & name );
   void renderInactive( wendo::LineBegin begin, Vorn::String const & name );

   wendo::RendererV2 & renderer_;
   PolicyState const & policyState_;
   PolicyMap::ClassActions::AheadCursor classActions_;
   RuleSnapshots snapshots_;
   bool showBytes_;
};

} // namespace TrafficPolicyCli
