// What a rule counts into.

#pragma once

#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/records/ActionRecords.h"

namespace TrafficPolicyCli {

// The class's count action, or null when it has none. The actions may be null. A record that is
// null or of another class than its type names is traced and ignored.
inline PolicyMap::CountAction const * countActionOf( PolicyMap::ClassAction const * actions,
                                                     Vorn::String const & className ) {
   auto const * entry =
      actions ? actions->policyAction().lookup( PolicyMap::ActionType::count ) : nullptr;
   if ( !entry ) {
      return nullptr;
   }
   auto const * count = PolicyMap::actionAs< PolicyMap::CountAction >( entry->get() );
   if ( !count ) {
      trace.write( 1, "Class: ", className, " has a count action of another class" );
   }
   return count;
}

} // namespace TrafficPolicyCli
