// Where the program keeps what belongs to no file of the user's.

#pragma once

#include <string>
#include <string_view>

namespace tpcli {

// The counter store of a source that is no file: $TPCLI_COUNTER_STORE, else "NAME.counters" in the
// user's folder of the program's state. Empty where there is no such folder.
std::string counterStoreOf( std::string_view name );

// Makes the folders that the file stands in. Throws FileError.
void makeFoldersOf( std::string const & path );

} // namespace tpcli
