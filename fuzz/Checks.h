// What must hold whatever was read.

#pragma once

#include "sources/FileError.h"
#include "sources/State.h"

#include <string>
#include <string_view>

namespace fuzz {

// Ends the process, with the message, unless it holds.
void require( bool holds, std::string_view message );

// The name of a file with the bytes, until the next call.
std::string fileOf( std::string_view bytes );

// The error of a document names the place in it.
void checkError( tpcli::FileError const & error );

// Every show of the state, alone and with a store that may be null: JSON is valid and has the rules
// of the text.
void checkShows( tpcli::State const & state, Vorn::Ptr< TrafficPolicy::Counter > const & store );

// The replies of the other commands that read the state; it is written and read back, and shown as
// before.
void checkCommands( tpcli::State const & state );

// A clear; the store is written and read back, and shows nothing counted since.
void checkClear( tpcli::State const & state );

// The store as it is written, which is read back and then written the same.
std::string checkStore( tpcli::State const & state, TrafficPolicy::Counter const & store );

} // namespace fuzz
