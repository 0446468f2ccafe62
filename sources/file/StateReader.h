// The parts of a state file, each read by its own function.

#pragma once

#include "sources/State.h"
#include "sources/json/JsonReader.h"

namespace tpcli {

// The condition of a rule in one family, not null.
Vorn::Ptr< Classification::StructuredFilter const >
readFilter( JsonValue & value, PolicyMap::ClassMapMatchOption family );

class RecentNames;
// A rule's actions. Counter names repeat, so they are shared.
Vorn::Ptr< PolicyMap::ClassAction const > readActions( JsonValue & value, RecentNames & counters );

void readConfig( JsonValue & value, State & state );
void readStatus( JsonValue & value, State & state );

} // namespace tpcli
