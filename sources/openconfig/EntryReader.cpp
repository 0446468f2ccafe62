#include "sources/openconfig/EntryReader.h"

#include "sources/openconfig/ConditionReader.h"
#include "sources/openconfig/Members.h"

#include <algorithm>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatchOption;

// The containers of an entry that hold conditions, and the family whose rules can show them.
struct ContainerRow {
   std::string_view name;
   void ( ConditionReader::*read )( JsonNode const & container );
   bool ( *fits )( ClassMapMatchOption family );
};

bool isIp( ClassMapMatchOption family ) {
   return family == ClassMapMatchOption::ipv4 || family == ClassMapMatchOption::ipv6;
}

constexpr ContainerRow containers[] = {
   { "ipv4", &ConditionReader::ip,
     []( auto family ) { return family == ClassMapMatchOption::ipv4; } },
   { "ipv6", &ConditionReader::ip,
     []( auto family ) { return family == ClassMapMatchOption::ipv6; } },
   { "transport", &ConditionReader::transport, isIp },
};

// Members of an entry that are no conditions.
constexpr std::string_view passedOver[] = { "sequence-id", "config", "state", "actions" };

void readNames( JsonTree const & tree, JsonNode const * list, NameSet & names ) {
   forEachEntry( tree, list, [&]( JsonNode const & entry ) {
      if ( JsonNode const * name = keyLeaf( entry, "name" ) ) {
         names.insert( name->text );
      }
   } );
}

} // namespace

DefinedSets readDefinedSets( JsonTree const & tree, JsonNode const * node ) {
   DefinedSets sets;
   readNames( tree, member( node, "ipv4-prefix-sets", "ipv4-prefix-set" ), sets.ip4Prefixes );
   readNames( tree, member( node, "ipv6-prefix-sets", "ipv6-prefix-set" ), sets.ip6Prefixes );
   readNames( tree, member( node, "port-sets", "port-set" ), sets.ports );
   return sets;
}

void EntryPlace::note( Notes & notes, std::string_view text ) const {
   addNote( notes, "acl-set " + std::string( set ) + ", entry " + std::to_string( sequenceId ),
            text );
}

ClassMapMatchOption familyOfEntry( SetType type, JsonNode const & entry ) {
   static constexpr ClassMapMatchOption families[] = { ClassMapMatchOption::ipv4,
                                                       ClassMapMatchOption::ipv6,
                                                       ClassMapMatchOption::mac,
                                                       ClassMapMatchOption::mpls };
   if ( type != SetType::mixed ) {
      return families[static_cast< size_t >( type )];
   }
   JsonNode const * const ip4 = object( member( &entry, "ipv4" ) );
   JsonNode const * const ip6 = object( member( &entry, "ipv6" ) );
   // One that says something counts for more than an empty one.
   return ip4 && saysAnything( *ip4 )   ? ClassMapMatchOption::ipv4
          : ip6 && saysAnything( *ip6 ) ? ClassMapMatchOption::ipv6
          : ip4                         ? ClassMapMatchOption::ipv4
          : ip6                         ? ClassMapMatchOption::ipv6
                                        : ClassMapMatchOption::mac;
}

Vorn::Ptr< Classification::StructuredFilter const >
readConditions( JsonNode const & entry, ClassMapMatchOption family, DefinedSets const & sets,
                EntryPlace const & place, Notes & notes ) {
   ConditionReader reader( family, sets, place, notes );
   for ( JsonNode const & container : entry ) {
      std::string_view const name = localName( container.name );
      auto const row = std::ranges::find( containers, name, &ContainerRow::name );
      if ( row != std::end( containers ) && row->fits( family ) ) {
         if ( object( &container ) ) {
            ( reader.*row->read )( container );
         }
      } else if ( std::ranges::find( passedOver, name ) == std::end( passedOver )
                  && saysAnything( container ) ) {
         reader.cannotShow( name );
      }
   }
   return reader.finish();
}

bool readActions( JsonNode const & entry, SwitchRule & rule, EntryPlace const & place,
                  Notes & notes ) {
   JsonNode const * const actions = object( member( &entry, "actions" ) );
   bool rejects = false;
   if ( !actions ) {
      return rejects;
   }
   forEachLeaf( *actions, [&]( JsonNode const & leaf ) {
      std::string_view const name = localName( leaf.name );
      std::string_view const value = identity( leaf.text );
      if ( name == "forwarding-action" && ( value == "DROP" || value == "REJECT" ) ) {
         rule.drop = true;
         rejects = value == "REJECT";
      } else if ( name == "log-action" && value == "LOG_SYSLOG" ) {
         rule.log = true;
      } else if ( saysAnything( leaf ) && !( name == "forwarding-action" && value == "ACCEPT" )
                  && !( name == "log-action" && value == "LOG_NONE" ) ) {
         place.note( notes,
                     std::string( name ) + " " + std::string( leaf.text ) + " cannot be shown" );
      }
   } );
   for ( JsonNode const & other : *actions ) {
      std::string_view const name = localName( other.name );
      if ( name != "config" && name != "state" && saysAnything( other ) ) {
         place.note( notes, std::string( name ) + " cannot be shown" );
      }
   }
   return rejects;
}

} // namespace tpcli
