#include "sources/json/JsonTree.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/FileError.h"
#include "sources/NameHash.h"

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

// The names of an object's members so far. Few are compared, many are hashed.
class MemberNames {
public:
   explicit MemberNames( JsonNode const & object )
      : object_( object ) {}

   bool has( std::string_view name ) const {
      return count_ > compared ? names_.contains( name ) : object_.find( name ) != nullptr;
   }
   // The member stands in the object.
   void add( JsonNode const & member ) {
      count_ += 1;
      if ( count_ == compared + 1 ) {
         for ( JsonNode const & earlier : object_ ) {
            names_.insert( earlier.name );
         }
      } else if ( count_ > compared ) {
         names_.insert( member.name );
      }
   }

private:
   static constexpr size_t compared = 8;

   JsonNode const & object_;
   NameSet names_;
   size_t count_ = 0;
};

} // namespace

JsonNode const * JsonNode::find( std::string_view memberName ) const {
   JsonNode const * member = isObject() ? first : nullptr;
   while ( member && member->name != memberName ) {
      member = member->next;
   }
   return member;
}

void JsonNode::fail( std::string const & message ) const {
   JsonNode const * root = this;
   while ( root->parent ) {
      root = root->parent;
   }
   throw FileError( std::string( root->name ), message,
                    { placeOf( *this ), position.line, position.column } );
}

JsonTree::JsonTree( InputFile & file )
   : name_( file.name() ) {
   root_.name = name_;
   readJson( file, [&]( JsonValue & value ) { build( root_, value, 0 ); } );
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

void JsonTree::buildObject( JsonNode & node, JsonValue & value, unsigned depth ) {
   node.kind = JsonNode::Kind::object;
   JsonNode * last = nullptr;
   MemberNames names( node );
   value.map( [&]( std::string_view name, JsonValue member ) {
      if ( names.has( name ) ) {
         member.fail( "given twice" );
      }
      JsonNode & child = add( node, last );
      child.name = texts_.copy( name );
      names.add( child );
      build( child, member, depth + 1 );
   } );
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
      buildObject( node, value, depth );
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
