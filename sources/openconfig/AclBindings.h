// Where the ACL sets of a document are bound: on interfaces, and on control-plane traffic.

#pragma once

#include "sources/openconfig/AclSets.h"

namespace tpcli {

class AclBindings {
public:
   // Both outlive this.
   AclBindings( JsonTree const & tree, Reading & reading )
      : tree_( tree )
      , reading_( reading ) {}

   // Bind what the document binds, and collect what the entries counted there. The nodes may be
   // null.
   void readInterfaces( JsonNode const * list, EntryCounts & counts );
   void readControlPlane( JsonNode const * traffic, EntryCounts & counts );

   // Says of the bound policies where they are programmed.
   void install( AclSets & policies ) const;

private:
   struct Installation {
      Pelx::IntfId intf;
      SetKey set;
   };

   // One bound set; notes name the place. `bind` is called with the policy's name.
   template< typename Bind >
   void readBinding( JsonNode const & node, std::string const & place, Pelx::IntfId const & intf,
                     EntryCounts & counts, Bind const & bind );
   void noteEgress( JsonNode const * list, std::string const & place ) const;

   JsonTree const & tree_;
   Reading & reading_;
   std::vector< Installation > installations_;
};

} // namespace tpcli
