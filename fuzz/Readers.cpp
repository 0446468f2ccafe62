#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "fuzz/Checks.h"
#include "fuzz/Targets.h"
#include "sources/Source.h"
#include "sources/file/CounterStore.h"

namespace fuzz {

namespace {

constexpr std::string_view policies = R"({
   "config": { "trafficPolicies": { "a": { "namedCounters": [ "c" ], "rules": [
      { "name": "r", "match": { "ipv4": {} }, "actions": { "count": true } },
      { "name": "n", "match": { "ipv4": {} }, "actions": { "count": "c" } } ] } },
      "cpu": { "default": "a" }, "interfaces": { "e": "a" } },
   "status": { "byteCounters": true, "perInterfaceCounting": true, "policies": { "a": {
      "rules": { "r": { "families": [ "ipv4" ], "counterId": 1, "packets": 18446744073709551615 },
                 "n": { "families": [ "ipv4" ] } },
      "namedCounters": { "c": { "counterId": 2, "packets": 5, "bytes": 6,
         "interfaces": { "e": { "counterId": 3, "packets": 7, "bytes": 8 } } } } } } } })";

} // namespace

void document( std::string_view bytes ) {
   try {
      auto const reading = tpcli::findSource( fileOf( bytes ) )->read();
      checkCommands( reading.state );
      checkClear( reading.state );
   } catch ( tpcli::FileError const & error ) {
      checkError( error );
   }
}

void store( std::string_view bytes ) {
   static auto const known = tpcli::findSource( fileOf( policies ) )->read();
   try {
      auto const read = tpcli::readCounterStore( fileOf( bytes ), *known.state.status );
      checkStore( known.state, *read );
      checkShows( known.state, read );
      TrafficPolicyCli::trafficPolicyCounterFactory( known.state.status, read )->clearCounter();
      checkStore( known.state, *read );
   } catch ( tpcli::FileError const & error ) {
      checkError( error );
   }
}

} // namespace fuzz
