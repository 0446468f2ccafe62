#include "sources/openconfig/AclBindings.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/openconfig/Members.h"
#include "sources/rules/Texts.h"

namespace tpcli {

namespace {

// A scalar leaf's text; empty for none.
std::string_view textOf( JsonNode const * leaf ) {
   return leaf && leaf->isScalar() ? leaf->text : std::string_view();
}

// The interface that is referred to, with its subinterface; without a reference the entry's id.
std::string nameOf( JsonTree const & tree, JsonNode const & entry ) {
   JsonNode const * const reference = member( &entry, "interface-ref" );
   std::string name( textOf( leaf( reference, "interface" ) ) );
   if ( name.empty() ) {
      name = textOf( keyLeaf( entry, "id" ) );
      if ( name.empty() ) {
         tree.fail( entry, "the member \"id\" is missing" );
      }
      return name;
   }
   std::string_view const subinterface = textOf( leaf( reference, "subinterface" ) );
   return subinterface.empty() || subinterface == "0" ? name
                                                      : name.append( "." ).append( subinterface );
}

} // namespace

template< typename Bind >
void AclBindings::readBinding( JsonNode const & node, std::string const & place,
                               Pelx::IntfId const & intf, EntryCounts & counts,
                               Bind const & bind ) {
   std::string_view const name = textOf( keyLeaf( node, "set-name" ) );
   if ( name.empty() ) {
      tree_.fail( node, "the member \"set-name\" is missing" );
   }
   bind( Vorn::String( name ) );
   std::string_view const typeText = textOf( keyLeaf( node, "type" ) );
   auto const type = setType( typeText );
   if ( !type ) {
      addNote( reading_.notes, place,
               "acl-set " + std::string( name )
                  + ( typeText.empty()
                         ? ": the type is missing"
                         : ": type \"" + std::string( typeText ) + "\" is not understood" ) );
   }
   SetKey const set{ type.value_or( SetType::mixed ), name };
   if ( object( member( &node, "state" ) ) ) {
      installations_.push_back( { intf, set } );
   }
   forEachEntry( tree_, member( &node, "acl-entries", "acl-entry" ), [&]( JsonNode const & entry ) {
      JsonNode const * const id = keyLeaf( entry, "sequence-id" );
      auto const number = parseNumber( textOf( id ), ~uint32_t{ 0 } );
      if ( !number ) {
         tree_.fail( id ? *id : entry, "not a sequence-id" );
      }
      auto const sequenceId = static_cast< uint32_t >( *number );
      counts.add( set, sequenceId, intf, entry, reading_.notes, { name, sequenceId } );
   } );
}

void AclBindings::noteEgress( JsonNode const * list, std::string const & place ) const {
   forEachEntry( tree_, list, [&]( JsonNode const & node ) {
      addNote( reading_.notes, place,
               "egress acl-set " + std::string( textOf( keyLeaf( node, "set-name" ) ) )
                  + " cannot be shown: these shows are of ingress" );
   } );
}

void AclBindings::readInterfaces( JsonNode const * list, EntryCounts & counts ) {
   forEachEntry( tree_, list, [&]( JsonNode const & entry ) {
      wendo::interrupt::check();
      std::string const name = nameOf( tree_, entry );
      std::string const place = "interface " + name;
      Pelx::IntfId const intf{ Vorn::String( name ) };
      forEachEntry( tree_, member( &entry, "ingress-acl-sets", "ingress-acl-set" ),
                    [&]( JsonNode const & node ) {
                       readBinding( node, place, intf, counts, [&]( Vorn::String const & policy ) {
                          reading_.state.bind( intf, policy );
                       } );
                    } );
      noteEgress( member( &entry, "egress-acl-sets", "egress-acl-set" ), place );
   } );
}

void AclBindings::readControlPlane( JsonNode const * traffic, EntryCounts & counts ) {
   std::string const place = "control-plane-traffic";
   L3::VrfName const vrf( "default" );
   Pelx::IntfId const intf( "control-plane" );
   State & state = reading_.state;
   forEachEntry(
      tree_, member( traffic, "ingress", "acl", "acl-set" ), [&]( JsonNode const & node ) {
         state.allVrfConfig->vrfIs( vrf );
         state.l3IntfStatusDir->intfStatusIs( intf, Vorn::create< L3::Intf::Status >( vrf ) );
         readBinding( node, place, intf, counts,
                      [&]( Vorn::String const & policy ) { state.bind( vrf, policy ); } );
      } );
   noteEgress( member( traffic, "egress", "acl", "acl-set" ), place );
}

void AclBindings::install( AclSets & policies ) const {
   PolicyMap::InstalledStatus programmed;
   programmed.status = PolicyMap::InstalledStatus::programmed;
   for ( auto const & [intf, set] : installations_ ) {
      wendo::interrupt::check();
      for ( auto const family : policies.families( set ) ) {
         policies.policy( set.name )->installedIs( intf, family, programmed );
      }
   }
}

} // namespace tpcli
