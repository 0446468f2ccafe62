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

// Whether any leaf is in it: servers send containers without one, too.
bool saysAnything( JsonNode const & node );
// Whether a leaf has a value: a null or an empty list is none.
inline bool isSaid( JsonNode const & leaf ) {
   return leaf.kind != JsonNode::Kind::null && !( leaf.isList() && !leaf.first );
}

// The node; null where it is none, or a JSON null. Throws FileError where it is no object.
JsonNode const * object( JsonNode const * node );

// The member of this local name, or null; so it is where the node is null, or of any other kind.
JsonNode const * memberIfObject( JsonNode const * node, std::string_view name );
// The same; throws FileError where the node is of another kind.
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

// Calls the function with each leaf that the container's "state" says, and with those of its
// "config" that the state does not say.
template< typename Function >
void forEachLeaf( JsonNode const & container, Function const & function ) {
   JsonNode const * const state = object( member( &container, "state" ) );
   JsonNode const * const config = object( member( &container, "config" ) );
   auto const inState = [&]( JsonNode const & child ) {
      JsonNode const * const other = member( state, localName( child.name ) );
      return other && isSaid( *other );
   };
   for ( JsonNode const * part : { state, config } ) {
      if ( part ) {
         for ( JsonNode const & child : *part ) {
            if ( isSaid( child ) && ( part == state || !inState( child ) ) ) {
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
