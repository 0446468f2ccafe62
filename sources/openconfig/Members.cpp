#include "sources/openconfig/Members.h"

#include <algorithm>

namespace tpcli {

std::string_view localName( std::string_view name ) {
   static constexpr std::string_view modules[] = {
      "openconfig-acl",        "openconfig-packet-match", "openconfig-defined-sets",
      "openconfig-interfaces", "openconfig-system",       "openconfig-system-controlplane",
   };
   size_t const colon = name.find( ':' );
   bool const ours =
      colon != name.npos
      && std::ranges::find( modules, name.substr( 0, colon ) ) != std::end( modules );
   return ours ? name.substr( colon + 1 ) : name;
}

std::string_view identity( std::string_view text ) {
   return text.substr( text.rfind( ':' ) + 1 ); // npos + 1 is 0
}

bool saysAnything( JsonNode const & node ) {
   bool any = !node.isObject() && !node.isList() && node.kind != JsonNode::Kind::null;
   for ( JsonNode const & child : node ) {
      any = any || saysAnything( child );
   }
   return any;
}

JsonNode const * object( JsonNode const * node ) {
   if ( !node || node->kind == JsonNode::Kind::null ) {
      return nullptr;
   }
   if ( !node->isObject() ) {
      node->fail( "not an object" );
   }
   return node;
}

JsonNode const * memberIfObject( JsonNode const * node, std::string_view name ) {
   if ( node && node->isObject() ) {
      for ( JsonNode const & child : *node ) {
         if ( localName( child.name ) == name ) {
            return &child;
         }
      }
   }
   return nullptr;
}

JsonNode const * member( JsonNode const * node, std::string_view name ) {
   return memberIfObject( object( node ), name );
}

JsonNode const * leaf( JsonNode const * container, std::string_view name ) {
   for ( std::string_view const part : { "state", "config" } ) {
      JsonNode const * const found = member( container, part, name );
      if ( found && isSaid( *found ) ) {
         return found;
      }
   }
   return nullptr;
}

JsonNode const * keyLeaf( JsonNode const & entry, std::string_view name ) {
   JsonNode const * const own = member( &entry, name );
   return own && isSaid( *own ) ? own : leaf( &entry, name );
}

} // namespace tpcli
