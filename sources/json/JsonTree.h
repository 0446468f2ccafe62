// A whole JSON document in memory, for forms whose parts refer to each other.
//
// Members and elements keep the document's order. Texts and nodes go with the tree.

#pragma once

#include "sources/TextArena.h"
#include "sources/json/JsonReader.h"

#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>

namespace tpcli {

struct JsonNode {
   enum class Kind : uint8_t { object, list, string, number, boolean, null };

   Kind kind = Kind::null;
   uint32_t index = 0;    // in the list or object
   std::string_view name; // as a member; the file's for the root; empty for an element
   std::string_view text; // a string's text; a number or word as it is written
   JsonText::Position position{};
   JsonNode const * parent = nullptr;
   JsonNode const * first = nullptr; // of the members or elements
   JsonNode const * next = nullptr;

   bool isObject() const { return kind == Kind::object; }
   bool isList() const { return kind == Kind::list; }
   // A string or a number: forms that mean the same in many documents.
   bool isScalar() const { return kind == Kind::string || kind == Kind::number; }

   // An object's member, or null; so it is where the node is no object.
   JsonNode const * find( std::string_view memberName ) const;
   // The error of this node, which stands in a tree.
   [[noreturn]] void fail( std::string const & message ) const;

   class Iterator {
   public:
      explicit Iterator( JsonNode const * node )
         : node_( node ) {}
      JsonNode const & operator*() const { return *node_; }
      Iterator & operator++() {
         node_ = node_->next;
         return *this;
      }
      friend bool operator==( Iterator, Iterator ) = default;

   private:
      JsonNode const * node_;
   };
   Iterator begin() const { return Iterator( first ); }
   Iterator end() const { return Iterator( nullptr ); } // NOLINT(readability-*): as a range has it
};

class JsonTree {
public:
   // Reads the file as one document. Throws FileError, SigIntException.
   explicit JsonTree( InputFile & file );

   JsonNode const & root() const { return root_; }
   [[noreturn]] void fail( JsonNode const & node, std::string const & message ) const {
      node.fail( message );
   }

private:
   void buildObject( JsonNode & node, JsonValue & value, unsigned depth );
   void build( JsonNode & node, JsonValue & value, unsigned depth );
   JsonNode & add( JsonNode & parent, JsonNode *& last );

   std::string name_;
   std::pmr::monotonic_buffer_resource memory_; // of the nodes
   TextArena texts_;
   JsonNode root_;
};

} // namespace tpcli
