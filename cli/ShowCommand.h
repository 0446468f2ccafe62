// `show traffic-policy {cpu | interface}`: filtered, once or again and again.

#pragma once

#include "cli/Command.h"
#include "cli/Session.h"

namespace tpcli {

// The show object of a show command. The state has been filtered; the store may be null.
Vorn::Ptr< TrafficPolicyCli::ShowTrafficPolicyBase >
makeShow( Command const & command, State const & state,
          Vorn::Ptr< TrafficPolicy::Counter const > const & counters );

// Tells a name in the command that the state has nowhere.
void hintAtUnknownNames( Session const & session, Command const & command );

// Reads, filters and shows. Throws what reading and writing throw.
void showPolicies( Session & session, Command const & command );

} // namespace tpcli
