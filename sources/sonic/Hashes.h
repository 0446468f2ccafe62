// The databases of a SONiC switch: hashes of texts by key, wherever they are kept.

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tpcli {

enum class SonicDatabase { config, counters, state };

// Its name on the switch.
constexpr std::string_view nameOf( SonicDatabase database ) {
   constexpr std::string_view names[] = { "CONFIG_DB", "COUNTERS_DB", "STATE_DB" };
   return names[static_cast< size_t >( database )];
}

class Hashes {
public:
   // The fields of a hash; a view holds for the call that gives it.
   using Fields = std::vector< std::pair< std::string_view, std::string_view > >;

   Hashes() = default;
   virtual ~Hashes() = default;
   Hashes( Hashes const & ) = delete;
   Hashes & operator=( Hashes const & ) = delete;

   using Take = std::function< void( size_t at, Fields const & fields ) >;

   // The keys of a database that begin so, each once, in byte order; they hold as long as this.
   // Throws FileError, SigIntException; so does the other one.
   virtual std::vector< std::string_view > keys( SonicDatabase database,
                                                 std::string_view begin ) = 0;
   // Calls the function for each name, in their order, with its place among them and the fields of
   // the hash whose key is the prefix and the name: none where there is no such hash.
   virtual void fetch( SonicDatabase database, std::string_view prefix,
                       std::vector< std::string_view > const & names, Take const & take ) = 0;
};

} // namespace tpcli
