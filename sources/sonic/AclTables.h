// The ACL tables and rules of a SONiC switch as policies.

#pragma once

#include "sources/Source.h"
#include "sources/sonic/Hashes.h"

namespace tpcli {

// Throws FileError, SigIntException.
void readAclTables( Hashes & hashes, Reading & reading );

} // namespace tpcli
