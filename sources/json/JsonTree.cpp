#include "sources/json/JsonTree.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/FileError.h"

#include <new>

namespace tpcli {

namespace {

constexpr unsigned depthMax = 200;

// The place as a chain, as the reader has it while it reads.
std::string placeOf( JsonNode const & node ) {
   if ( !node.parent ) {
      return "";
   }
   Place const root;
   Place const place{
      .parent = &root, .name = node.name, .index = node.index, .isElement = node.parent->isList()
   };
   return placeOf( *node.parent ) + place.pointer();
}

} // namespace

JsonTree::JsonTree( InputFile & file )
   : name_( file.name() ) {
   readJson( file, [&]( JsonValue & value ) { build( root_, value, 0 ); } );
}

void JsonTree::fail( JsonNode const & node, std::string const & message ) const {
   throw FileError( name_, message, { placeOf( node ), node.position.line, node.position.column } );
}

JsonNode & JsonTree::add( JsonNode & parent, JsonNode *& last ) {
   auto * const node =
      ::new ( memory_.allocate( sizeof( JsonNode ), alignof( JsonNode ) ) ) JsonNode;
   node->parent = &parent;
   if ( last ) {
      node->index = last->index + 1;
      last->next = node;
   } else {
      parent.first = node;
   }
   last = node;
   return *node;
}

void JsonTree::build( JsonNode & node, JsonValue & value, unsigned depth ) {
   if ( depth == depthMax ) {
      value.fail( "nested too deeply" );
   }
   wendo::interrupt::check();
   node.position = value.position();
   JsonNode * last = nullptr;
   switch ( value.type() ) {
   case JsonType::object:
      node.kind = JsonNode::Kind::object;
      value.map( [&]( std::string_view name, JsonValue member ) {
         JsonNode & child = add( node, last );
         child.name = texts_.copy( name );
         build( child, member, depth + 1 );
      } );
      break;
   case JsonType::list:
      node.kind = JsonNode::Kind::list;
      value.list( [&]( JsonValue element ) { build( add( node, last ), element, depth + 1 ); } );
      break;
   case JsonType::string:
      node.kind = JsonNode::Kind::string;
      node.text = texts_.copy( value.string() );
      break;
   case JsonType::number:
      node.kind = JsonNode::Kind::number;
      node.text = texts_.copy( value.numberText() );
      break;
   case JsonType::boolean:
      node.kind = JsonNode::Kind::boolean;
      node.text = value.boolean() ? "true" : "false";
      break;
   case JsonType::null:
      value.null();
      break;
   }
}

} // namespace tpcli
