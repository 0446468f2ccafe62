// A state file and its parts, each read by its own function.

#pragma once

#include "sources/State.h"
#include "sources/json/JsonReader.h"

namespace tpcli {

// All of it. Throws FileError, SigIntException.
State readState( InputFile & file );

// The condition of a rule in one family, not null.
Vorn::Ptr< Classification::StructuredFilter const >
readFilter( JsonValue & value, PolicyMap::ClassMapMatchOption family );

class SharedActions;
// A rule's actions. Rules share those that are equal.
Vorn::Ptr< PolicyMap::ClassAction const > readActions( JsonValue & value, SharedActions & shared );

void readConfig( JsonValue & value, State & state );
void readStatus( JsonValue & value, State & state );

} // namespace tpcli
