// The ACL sets of a document as policies.

#pragma once

#include "sources/Source.h"
#include "sources/openconfig/EntryCounts.h"

#include <array>
#include <map>
#include <memory>

namespace tpcli {

// Sets of one name and several types make one policy.
class AclSets {
public:
   // All of them outlive this.
   AclSets( JsonTree const & tree, DefinedSets const & defined, EntryCounts & counts,
            Reading & reading )
      : tree_( tree )
      , defined_( defined )
      , counts_( counts )
      , reading_( reading ) {}

   // The list of sets, or null.
   void read( JsonNode const * list );

   // The policy, or null.
   PolicyBuilder * policy( std::string_view name );
   // The families that the rules of the set have; none where there is no such set.
   std::vector< PolicyMap::ClassMapMatchOption > families( SetKey const & set ) const;

private:
   struct Set {
      JsonNode const * node = nullptr;
      unsigned families = 0; // that the set's rules have, as bits
   };
   struct Policy {
      std::array< Set, setTypes > sets; // by type
      std::unique_ptr< PolicyBuilder > builder;
      bool rejects = false;
   };
   struct Entry {
      uint32_t sequenceId;
      JsonNode const * node;
   };

   void readPolicy( std::string_view name, Policy & policy );
   std::vector< Entry > entriesInOrder( JsonNode const & set ) const;
   void readEntry( SetKey const & key, Entry const & entry, bool severalTypes, Policy & policy );

   JsonTree const & tree_;
   DefinedSets const & defined_;
   EntryCounts & counts_;
   Reading & reading_;
   std::map< std::string_view, Policy > policies_;
};

} // namespace tpcli
