// `show traffic-policy {cpu | interface}`: filtered, once or again and again.

#pragma once

#include "cli/Command.h"
#include "cli/Session.h"

namespace tpcli {

// Tells a name in the command that the state has nowhere.
void hintAtUnknownNames( Session const & session, Command const & command );

// Reads, filters and shows. Throws what reading and writing throw.
void showPolicies( Session & session, Command const & command );

} // namespace tpcli
