// The conditions of one entry, container by container.

#pragma once

#include "sources/openconfig/EntryReader.h"
#include "sources/rules/Conditions.h"

#include <string_view>

namespace tpcli {

class ConditionReader {
public:
   // All of them outlive this.
   ConditionReader( PolicyMap::ClassMapMatchOption family, DefinedSets const & sets,
                    EntryPlace const & place, Notes & notes )
      : family_( family )
      , sets_( sets )
      , place_( place )
      , notes_( notes ) {}

   // Containers of the entry: "ipv4" or "ipv6", and "transport".
   void ip( JsonNode const & container );
   void transport( JsonNode const & container );

   // What stands in the entry and not in the rule.
   void cannotShow( std::string_view what );

   Vorn::Ptr< Classification::StructuredFilter const > finish();

private:
   using Leaf = JsonNode;
   using Filter = Classification::StructuredFilter;
   struct LeafRow {
      std::string_view name;
      void ( ConditionReader::*read )( Leaf const & leaf );
   };
   enum class Side { source, destination };

   static LeafRow const ipLeaves[];
   static LeafRow const transportLeaves[];

   template< size_t count >
   void readLeaves( JsonNode const & container, LeafRow const ( &rows )[count] );
   bool isIp6() const { return family_ == PolicyMap::ClassMapMatchOption::ipv6; }
   void notUnderstood( Leaf const & leaf, JsonNode const & value );
   void checkDefined( std::string_view kind, NameSet const & names, std::string_view name );

   template< Side side >
   void address( Leaf const & leaf );
   template< Side side >
   void prefixSet( Leaf const & leaf );
   void protocol( Leaf const & leaf );
   template< auto insert, uint32_t maximum >
   void numbers( Leaf const & leaf );
   void fragmentOffsets( Leaf const & leaf );
   template< Side side >
   void ports( Leaf const & leaf );
   template< Side side >
   void portSet( Leaf const & leaf );
   void builtinDetail( Leaf const & leaf );
   void nothing( Leaf const & ) {}
   void icmp( JsonNode const & container );

   Conditions::Ports & portsOf( Side side ) {
      return side == Side::source ? conditions_.source : conditions_.destination;
   }

   PolicyMap::ClassMapMatchOption family_;
   DefinedSets const & sets_;
   EntryPlace const & place_;
   Notes & notes_;

   Conditions conditions_;
   std::vector< Classification::FragmentOffsetRange > offsets_;
   bool isFragment_ = false;  // builtin-detail FRAGMENT
   bool isAnyOffset_ = false; // "ANY" among the offsets
};

} // namespace tpcli
