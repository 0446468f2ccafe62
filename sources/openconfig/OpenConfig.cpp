#include "sources/openconfig/OpenConfig.h"

#include "sources/openconfig/AclBindings.h"
#include "sources/openconfig/AclSets.h"
#include "sources/openconfig/Members.h"

#include <algorithm>
#include <span>

namespace tpcli {

namespace {

using TrafficPolicy::CounterGranularity;

constexpr std::string_view rootTops[] = { "acl", "system", "defined-sets" };
// Those of the container "acl", which may be the document's top.
constexpr std::string_view aclTops[] = { "acl-sets", "interfaces", "state" };

bool isOneOf( std::span< std::string_view const > names, std::string_view name ) {
   return std::ranges::find( names, name ) != names.end();
}

constexpr std::string_view aclModule = "openconfig-acl:";

// The interfaces of the container "acl", and not those of the switch, which may be of any form.
bool isAclInterfaces( JsonNode const & node ) {
   if ( node.name.starts_with( aclModule ) ) {
      return true;
   }
   JsonNode const * const list = memberIfObject( &node, "interface" );
   JsonNode const * const entry = list && list->isList() ? list->first : nullptr;
   auto const hasId = []( JsonNode const * part ) {
      return memberIfObject( part, "id" ) != nullptr;
   };
   return node.name == "interfaces"
          && ( hasId( entry ) || hasId( memberIfObject( entry, "state" ) )
               || hasId( memberIfObject( entry, "config" ) ) );
}

// The member of the model for ACLs, whose name may have the module's before it; null for none.
// Others of the same name are passed over.
JsonNode const * aclMember( JsonNode const * node, std::string_view name ) {
   if ( !object( node ) ) {
      return nullptr;
   }
   JsonNode const * const full = node->find( std::string( aclModule ).append( name ) );
   JsonNode const * const bare = node->find( name );
   bool const isAnother = bare && name == "interfaces" && !isAclInterfaces( *bare );
   if ( full && bare && !isAnother ) {
      ( full->index > bare->index ? full : bare )->fail( "given twice" );
   }
   return full ? full : bare;
}

// The container "acl": below the top, or the top itself; null where there is none.
JsonNode const * findAcl( JsonTree const & tree ) {
   if ( JsonNode const * acl = aclMember( &tree.root(), "acl" ) ) {
      return acl;
   }
   bool isRoot = false;
   JsonNode const * others = nullptr; // the switch's interfaces
   for ( JsonNode const & top : tree.root() ) {
      std::string_view const name = localName( top.name );
      if ( name == "interfaces" ? isAclInterfaces( top ) : isOneOf( aclTops, name ) ) {
         return &tree.root();
      }
      isRoot |= isOneOf( rootTops, name );
      others = name == "interfaces" ? &top : others;
   }
   if ( !isRoot && others ) {
      others->fail( "the interfaces of the switch: those of \"acl\" have an \"id\"" );
   }
   if ( !isRoot ) {
      tree.fail( tree.root(), "none of the members is " + openConfigTops() );
   }
   return nullptr;
}

struct CapabilityRow {
   std::string_view name;
   CounterGranularity granularity;
   bool perInterface;
   bool totalsAreSums;
};
constexpr CapabilityRow capabilities[] = {
   { "INTERFACE_ONLY", CounterGranularity::perInterface, true, true },
   { "INTERFACE_AGGREGATE", CounterGranularity::perInterface, true, false },
   { "AGGREGATE_ONLY", CounterGranularity::perPolicy, false, false },
};

void readCapability( JsonNode const * acl, Reading & reading, EntryCounts & counts ) {
   JsonNode const * const capability = leaf( acl, "counter-capability" );
   if ( !capability ) {
      return;
   }
   auto const row =
      std::ranges::find( capabilities, identity( capability->text ), &CapabilityRow::name );
   if ( row == std::end( capabilities ) ) {
      addNote( reading.notes, "acl",
               "counter-capability \"" + std::string( capability->text ) + "\" is not understood" );
      return;
   }
   State & state = reading.state;
   state.policyParamStatus = Vorn::create< TrafficPolicy::TrafficPolicyIntfParamStatus >();
   state.policyParamStatus->ingressCounterGranularityIs( row->granularity );
   state.status->perIntfCountingIs( row->perInterface );
   counts.totalsAreSumsIs( row->totalsAreSums );
}

} // namespace

bool isOpenConfigTop( std::string_view name ) {
   std::string_view const local = localName( name );
   return name.starts_with( "openconfig-" ) || isOneOf( rootTops, local )
          || isOneOf( aclTops, local );
}

std::string openConfigTops() {
   std::string text;
   for ( auto const & names : { std::span< std::string_view const >( rootTops ),
                                std::span< std::string_view const >( aclTops ) } ) {
      for ( std::string_view const name : names ) {
         text.append( text.empty() ? "" : ", " ).append( "\"" ).append( name ).append( "\"" );
      }
   }
   return text.insert( text.rfind( ',' ) + 1, " or" );
}

void readOpenConfig( JsonTree const & tree, Reading & reading ) {
   JsonNode const * const acl = findAcl( tree );
   JsonNode const * const system = member( &tree.root(), "system" );
   DefinedSets const sets = readDefinedSets( tree, member( &tree.root(), "defined-sets" ) );
   EntryCounts counts;
   readCapability( acl, reading, counts );
   AclBindings bindings( tree, reading );
   bindings.readInterfaces( member( aclMember( acl, "interfaces" ), "interface" ), counts );
   bindings.readControlPlane( member( system, "control-plane-traffic" ), counts );
   AclSets policies( tree, sets, counts, reading );
   policies.read( member( aclMember( acl, "acl-sets" ), "acl-set" ) );
   bindings.install( policies );
   reading.state.status->byteCountersSupportedIs( counts.anyOctets() );
}

} // namespace tpcli
