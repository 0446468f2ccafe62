// What the entries of ACL sets counted, by interface and in all.

#pragma once

#include "sources/openconfig/EntryReader.h"

#include <map>
#include <optional>

namespace tpcli {

// An ACL set; the document outlives the name.
struct SetKey {
   SetType type;
   std::string_view name;

   friend auto operator<=>( SetKey const &, SetKey const & ) = default;
};

// The type that an identity names; nothing for another one.
std::optional< SetType > setType( std::string_view text );

class EntryCounts {
public:
   void totalsAreSumsIs( bool sums ) { totalsAreSums_ = sums; }
   bool anyOctets() const { return anyOctets_; }

   // Adds what an entry of a set counted on an interface: the node has a "state" with that.
   void add( SetKey const & set, uint32_t sequenceId, Pelx::IntfId const & intf,
             JsonNode const & node, Notes & notes, EntryPlace const & place );

   // The rule's count, from the entry's own "state" and what its interfaces counted.
   void countIs( SwitchRule & rule, SetKey const & set, uint32_t sequenceId, JsonNode const & entry,
                 Notes & notes, EntryPlace const & place );

private:
   struct Count {
      std::optional< uint64_t > packets;
      std::optional< uint64_t > octets;
   };
   struct IntfCount {
      Pelx::IntfId intf;
      Count count;
   };

   static void addTo( Count & sum, Count const & count );
   static void mergeInterfaces( std::vector< IntfCount > & counts );
   Count read( JsonNode const & node, Notes & notes, EntryPlace const & place );

   std::map< SetKey, std::map< uint32_t, std::vector< IntfCount > > > byInterface_;
   bool totalsAreSums_ = false;
   bool anyOctets_ = false;
};

} // namespace tpcli
