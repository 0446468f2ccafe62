// The members of an OpenConfig document, whose names may have the module's name before them.

#pragma once

#include "sources/json/JsonTree.h"

#include <string_view>

namespace tpcli {

// The name without the module, if that is one of those read here; the whole name otherwise, which
// is none of ours then.
std::string_view localName( std::string_view name );

// An identity's name without its module.
std::string_view identity( std::string_view text );

// The member of this local name, or null. The node may be null.
JsonNode const * member( JsonNode const * node, std::string_view name );
template< typename... Names >
JsonNode const * member( JsonNode const * node, std::string_view name, Names... deeper ) {
   return member( member( node, name ), deeper... );
}

// What a container says in its "state", else in its "config"; null for nothing. The container may
// be null.
JsonNode const * leaf( JsonNode const * container, std::string_view name );

// A leaf that is a list's key: it may stand in the entry itself, too.
JsonNode const * keyLeaf( JsonNode const & entry, std::string_view name );

// Calls the function with each leaf of the container's "state" and with those of its "config" that
// are not there.
template< typename Function >
void forEachLeaf( JsonNode const & container, Function const & function ) {
   JsonNode const * const state = member( &container, "state" );
   JsonNode const * const config = member( &container, "config" );
   for ( JsonNode const * part : { state, config } ) {
      if ( part && part->isObject() ) {
         for ( JsonNode const & child : *part ) {
            if ( part == state || !member( state, localName( child.name ) ) ) {
               function( child );
            }
         }
      }
   }
}

// Calls the function with each entry of the list inside the container, or with the container's one
// value where no list stands.
template< typename Function >
void forEachEntry( JsonTree const & tree, JsonNode const * list, Function const & function ) {
   if ( !list || list->kind == JsonNode::Kind::null ) {
      return;
   }
   if ( !list->isList() ) {
      tree.fail( *list, "not a list" );
   }
   for ( JsonNode const & entry : *list ) {
      if ( !entry.isObject() ) {
         tree.fail( entry, "not an object" );
      }
      function( entry );
   }
}

// A leaf's value, or each of a leaf-list's.
template< typename Function >
void forEachValue( JsonNode const & leaf, Function const & function ) {
   if ( !leaf.isList() ) {
      function( leaf );
      return;
   }
   for ( JsonNode const & value : leaf ) {
      function( value );
   }
}

} // namespace tpcli
