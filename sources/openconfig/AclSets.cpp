#include "sources/openconfig/AclSets.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/openconfig/Members.h"
#include "sources/rules/Texts.h"

#include <algorithm>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatchOption;

// What the names of rules begin with in a policy of several types.
constexpr std::string_view prefixes[setTypes] = { "ipv4-", "ipv6-", "l2-", "mpls-", "mixed-" };

// A leaf that makes a list's key.
JsonNode const & needed( JsonTree const & tree, JsonNode const & entry, std::string_view name ) {
   JsonNode const * const found = keyLeaf( entry, name );
   if ( !found || !found->isScalar() || found->text.empty() ) {
      tree.fail( entry, "the member \"" + std::string( name ) + "\" is missing" );
   }
   return *found;
}

} // namespace

void AclSets::read( JsonNode const * list ) {
   forEachEntry( tree_, list, [&]( JsonNode const & node ) {
      std::string_view const name = needed( tree_, node, "name" ).text;
      std::string_view const typeText = needed( tree_, node, "type" ).text;
      auto const type = setType( typeText );
      if ( !type ) {
         addNote( reading_.notes, "acl-set " + std::string( name ),
                  "type \"" + std::string( typeText ) + "\" is not understood" );
      }
      Set & set = policies_[name].sets[static_cast< size_t >( type.value_or( SetType::mixed ) )];
      if ( set.node ) {
         tree_.fail( node, "the set is given twice" );
      }
      set.node = &node;
   } );
   for ( auto & [name, policy] : policies_ ) {
      readPolicy( name, policy );
   }
}

void AclSets::readPolicy( std::string_view name, Policy & policy ) {
   policy.builder = std::make_unique< PolicyBuilder >( reading_.state, name );
   std::array< std::vector< Entry >, setTypes > entries;
   size_t types = 0;
   size_t rules = 0;
   for ( size_t type = 0; type < setTypes; ++type ) {
      if ( JsonNode const * const set = policy.sets[type].node ) {
         entries[type] = entriesInOrder( *set );
         types += 1;
         rules += entries[type].size();
      }
   }
   policy.builder->reserve( std::min( rules, Vorn::rulesMax ) );
   for ( size_t type = 0; type < setTypes; ++type ) {
      for ( Entry const & entry : entries[type] ) {
         wendo::interrupt::check();
         readEntry( { static_cast< SetType >( type ), name }, entry, types > 1, policy );
      }
   }
   if ( policy.rejects ) {
      addNote( reading_.notes, "acl-set " + std::string( name ), "REJECT is shown as a drop" );
   }
}

std::vector< AclSets::Entry > AclSets::entriesInOrder( JsonNode const & set ) const {
   std::vector< Entry > entries;
   forEachEntry( tree_, member( &set, "acl-entries", "acl-entry" ), [&]( JsonNode const & node ) {
      JsonNode const & id = needed( tree_, node, "sequence-id" );
      auto const number = parseNumber( id.text, ~uint32_t{ 0 } );
      if ( !number ) {
         tree_.fail( id, "not a sequence-id" );
      }
      entries.push_back( { static_cast< uint32_t >( *number ), &node } );
   } );
   std::ranges::stable_sort( entries, {}, &Entry::sequenceId );
   auto const twice = std::ranges::adjacent_find( entries, {}, &Entry::sequenceId );
   if ( twice != entries.end() ) {
      tree_.fail( *twice[1].node, "the sequence-id is given twice" );
   }
   return entries;
}

void AclSets::readEntry( SetKey const & key, Entry const & entry, bool severalTypes,
                         Policy & policy ) {
   EntryPlace const place{ key.name, entry.sequenceId };
   Notes & notes = reading_.notes;
   auto const type = static_cast< size_t >( key.type );
   SwitchRule rule;
   rule.name = Vorn::String( std::string( severalTypes ? prefixes[type] : "" )
                             + std::to_string( entry.sequenceId ) );
   rule.family = familyOfEntry( key.type, *entry.node );
   rule.filter = readConditions( *entry.node, rule.family, defined_, place, notes );
   policy.rejects |= readActions( *entry.node, rule, place, notes );
   counts_.countIs( rule, key, entry.sequenceId, *entry.node, notes, place );
   policy.builder->add( rule );
   policy.sets[type].families |= 1u << static_cast< unsigned >( rule.family );
}

PolicyBuilder * AclSets::policy( std::string_view name ) {
   auto const found = policies_.find( name );
   return found == policies_.end() ? nullptr : found->second.builder.get();
}

std::vector< ClassMapMatchOption > AclSets::families( SetKey const & set ) const {
   auto const found = policies_.find( set.name );
   if ( found == policies_.end() ) {
      return {};
   }
   Set const & entry = found->second.sets[static_cast< size_t >( set.type )];
   if ( entry.node && set.type != SetType::mixed ) {
      return { allFamilies[static_cast< size_t >( set.type )] };
   }
   std::vector< ClassMapMatchOption > result;
   for ( auto const family : allFamilies ) {
      if ( ( entry.families >> static_cast< unsigned >( family ) & 1 ) != 0 ) {
         result.push_back( family );
      }
   }
   return result;
}

} // namespace tpcli
