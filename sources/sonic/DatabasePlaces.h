// Where the databases of a SONiC switch are: server and number.

#pragma once

#include "sources/redis/RedisConnection.h"
#include "sources/sonic/Hashes.h"

#include <array>

namespace tpcli {

struct DatabasePlace {
   RedisAddress server;
   unsigned number = 0;
};
using DatabasePlaces = std::array< DatabasePlace, 3 >; // by SonicDatabase

// The places that the text after "sonic:" names: "unix:PATH", "HOST", "HOST:PORT", "[HOST]:PORT";
// empty: those of this machine, which this file tells, or the usual ones where it is not there.
// Throws FileError.
DatabasePlaces
findDatabases( std::string const & text,
               std::string const & file = "/var/run/redis/sonic-db/database_config.json" );

} // namespace tpcli
