// The databases of a SONiC switch that runs, as a source.

#pragma once

#include "sources/Source.h"
#include "sources/TextArena.h"
#include "sources/sonic/DatabasePlaces.h"

#include <optional>

namespace tpcli {

// The hashes of the servers. Nothing is ever written there.
class SwitchHashes : public Hashes {
public:
   // Connects when a database is first asked for. The name is for errors.
   SwitchHashes( DatabasePlaces places, std::string name, RedisTimeouts const & timeouts = {} )
      : places_( std::move( places ) )
      , name_( std::move( name ) )
      , timeouts_( timeouts ) {}

   std::vector< std::string_view > keys( SonicDatabase database, std::string_view begin ) override;
   void fetch( SonicDatabase database, std::string_view prefix,
               std::vector< std::string_view > const & names, Take const & take ) override;

private:
   RedisConnection & connection( SonicDatabase database );
   void select( RedisConnection & connection, unsigned number ) const;

   DatabasePlaces places_;
   std::string name_;
   RedisTimeouts timeouts_;
   std::array< std::optional< RedisConnection >, 3 > connections_; // by SonicDatabase
   TextArena keys_;
};

class SonicSwitch : public Source {
public:
   // The text after --state: "sonic:" and what findDatabases takes.
   explicit SonicSwitch( std::string text )
      : text_( std::move( text ) ) {}

   Reading read() override;
   std::string defaultCounterStore() const override;

private:
   std::string text_;
};

} // namespace tpcli
