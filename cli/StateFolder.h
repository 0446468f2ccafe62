// Where the program keeps what it remembers of its user from run to run.

#pragma once

#include <string>

namespace tpcli {

// $XDG_STATE_HOME/tpcli, else ~/.local/state/tpcli; made if it is not there. Empty when there is
// none.
std::string makeStateFolder();

} // namespace tpcli
