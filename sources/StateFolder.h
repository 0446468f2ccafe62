// Where the program keeps what it remembers of its user from run to run.

#pragma once

#include <string>
#include <string_view>

namespace tpcli {

// $XDG_STATE_HOME/tpcli, else ~/.local/state/tpcli. Empty when there is none.
std::string stateFolder();
// The same, made if it is not there.
std::string makeStateFolder();

// The counter store of a source that is no file: $TPCLI_COUNTER_STORE, else "NAME.counters" in that
// folder. Empty where there is none.
std::string counterStoreOf( std::string_view name );

// Makes the folders that the file stands in. Throws FileError.
void makeFoldersOf( std::string const & path );

} // namespace tpcli
