// Documents of a SONiC switch: config_db.json, and dumps of its databases.
//
// config_db.json has one object a table. In a dump each hash stands under its key. One document may
// have the hashes of several databases.

#pragma once

#include "sources/Source.h"
#include "sources/json/JsonTree.h"

namespace tpcli {

// Throws FileError.
void readSonicDocument( JsonTree const & tree, Reading & reading );

} // namespace tpcli
