#include "sources/sonic/SonicDocument.h"

#include "sources/sonic/AclTables.h"

#include <list>
#include <map>

namespace tpcli {

namespace {

// {"type":"hash","value":{...}}: the fields, or null where it is no such entry of a dump.
JsonNode const * dumped( JsonNode const & node ) {
   bool isHash = false;
   JsonNode const * value = nullptr;
   for ( JsonNode const & member : node ) {
      isHash |= member.name == "type" && member.kind == JsonNode::Kind::string;
      value = member.name == "value" ? &member : value;
   }
   return isHash ? value : nullptr;
}

class DocumentHashes : public Hashes {
public:
   explicit DocumentHashes( JsonTree const & tree )
      : tree_( tree ) {
      for ( JsonNode const & top : tree.root() ) {
         JsonNode const * const fields = dumped( top );
         if ( fields || ( !top.isObject() && top.kind != JsonNode::Kind::null ) ) {
            add( std::string( top.name ), fields ? *fields : top );
         } else {
            for ( JsonNode const & entry : top ) {
               add( std::string( top.name ).append( "|" ).append( entry.name ), entry );
            }
         }
      }
   }

   std::vector< std::string_view > keys( SonicDatabase, std::string_view begin ) override {
      checkTable( begin );
      std::vector< std::string_view > result;
      for ( auto at = hashes_.lower_bound( begin );
            at != hashes_.end() && at->first.starts_with( begin ); ++at ) {
         result.push_back( at->first );
      }
      return result;
   }

   void fetch( SonicDatabase, std::string_view prefix,
               std::vector< std::string_view > const & names, Take const & take ) override {
      checkTable( prefix );
      Fields fields;
      for ( size_t at = 0; at < names.size(); ++at ) {
         fields.clear();
         lists_.clear();
         auto const found = hashes_.find( std::string( prefix ).append( names[at] ) );
         if ( found != hashes_.end() ) {
            addFields( *found->second, fields );
         }
         take( at, fields );
      }
   }

private:
   void add( std::string key, JsonNode const & fields ) {
      if ( !hashes_.emplace( std::move( key ), &fields ).second ) {
         tree_.fail( fields, "given twice" );
      }
   }

   // A table is an object of hashes; the prefix is that of its keys.
   void checkTable( std::string_view prefix ) const {
      size_t const bar = prefix.find( '|' );
      auto const table =
         bar == prefix.npos ? hashes_.end() : hashes_.find( prefix.substr( 0, bar ) );
      if ( table != hashes_.end() && !table->second->isObject() ) {
         tree_.fail( *table->second, "not an object" );
      }
   }

   void addFields( JsonNode const & node, Fields & fields ) {
      if ( !node.isObject() ) {
         tree_.fail( node, "not an object" );
      }
      for ( JsonNode const & field : node ) {
         if ( field.isList() ) {
            // As a database has it.
            std::string & name = lists_.emplace_back( field.name );
            name.append( name.ends_with( '@' ) ? "" : "@" );
            fields.emplace_back( name, lists_.emplace_back( joined( field ) ) );
         } else if ( field.isObject() ) {
            tree_.fail( field, "not a text" );
         } else {
            fields.emplace_back( field.name, field.text );
         }
      }
      if ( fields.empty() ) {
         // A hash without fields is there all the same.
         fields.emplace_back( "NULL", "NULL" );
      }
   }

   std::string joined( JsonNode const & list ) const {
      std::string text;
      for ( JsonNode const & element : list ) {
         if ( element.isObject() || element.isList() ) {
            tree_.fail( element, "not a text" );
         }
         text.append( text.empty() ? "" : "," ).append( element.text );
      }
      return text;
   }

   JsonTree const & tree_;
   std::map< std::string, JsonNode const *, std::less<> > hashes_;
   std::list< std::string > lists_; // of the hash that was read last
};

} // namespace

void readSonicDocument( JsonTree const & tree, Reading & reading ) {
   DocumentHashes hashes( tree );
   readAclTables( hashes, reading );
}

} // namespace tpcli
