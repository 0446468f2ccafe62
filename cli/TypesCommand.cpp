#include "cli/TypesCommand.h"

// Brings in the classes, which a static library would leave out otherwise.
#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "TrafficPolicy/platform/vorn/AttributeRow.h"
#include "TrafficPolicy/platform/vorn/TypeRecord.h"
#include "cli/Errors.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tpcli {

namespace {

using Vorn::AttributeRow;
using Vorn::TypeRecord;
using wendo::JsonKey;
using wendo::JustifyLeft;
using wendo::RendererV2;

TypeRecord const & findType( std::string_view name ) {
   if ( TypeRecord const * type = TypeRecord::find( name ) ) {
      return *type;
   }
   std::string const ending = "::" + std::string( name );
   TypeRecord const * found = nullptr;
   for ( TypeRecord const * type : TypeRecord::sorted() ) {
      if ( type->name().ends_with( ending ) ) {
         if ( found ) {
            throw UsageError( "several classes have the name \"" + std::string( name ) + "\"" );
         }
         found = type;
      }
   }
   if ( !found ) {
      throw UsageError( "no class has the name \"" + std::string( name ) + "\"" );
   }
   return *found;
}

struct Attribute {
   TypeRecord const & declarer;
   AttributeRow const & row;
};

// Those of the base classes first.
std::vector< Attribute > attributesOf( TypeRecord const & type ) {
   std::vector< Attribute > result;
   if ( type.base() ) {
      result = attributesOf( *type.base() );
   }
   for ( AttributeRow const & row : type.attributes() ) {
      result.push_back( { type, row } );
   }
   return result;
}

constexpr JsonKey nameKey( "name" );

void writeAttribute( RendererV2 & renderer, Attribute const & attribute ) {
   static constexpr JsonKey declarer( "class" );
   static constexpr JsonKey kind( "kind" );
   static constexpr JsonKey key( "key" );
   static constexpr JsonKey value( "value" );
   static constexpr JsonKey operationsKey( "operations" );
   Vorn::AttributeOperations const & operations = *attribute.row.operations;
   auto const entry = renderer.listEntry();
   renderer._addJsonKeyValuePair( nameKey, attribute.row.name );
   renderer._addJsonKeyValuePair( declarer, attribute.declarer.name() );
   renderer._addJsonKeyValuePair( kind, attributeKindName( attribute.row.kind ) );
   if ( !operations.keyType.empty() ) {
      renderer._addJsonKeyValuePair( key, operations.keyType );
   }
   if ( !operations.valueType.empty() ) {
      renderer._addJsonKeyValuePair( value, operations.valueType );
   }
   auto const list = renderer.list( operationsKey );
   for ( std::string_view const name : operations.names() ) {
      renderer._addJsonKeyValuePair( wendo::listElement, name );
   }
}

void writeMembers( RendererV2 & renderer, TypeRecord const & type ) {
   static constexpr JsonKey base( "base" );
   static constexpr JsonKey constructor( "constructor" );
   static constexpr JsonKey parameterType( "type" );
   static constexpr JsonKey attributes( "attributes" );
   renderer._addJsonKeyValuePair( nameKey, type.name() );
   if ( type.base() ) {
      renderer._addJsonKeyValuePair( base, type.base()->name() );
   } else {
      renderer._addJsonKeyValuePair( base, nullptr );
   }
   {
      auto const list = renderer.list( constructor );
      for ( auto const & [name, typeName] : type.constructor()->parameters ) {
         auto const entry = renderer.listEntry();
         renderer._addJsonKeyValuePair( nameKey, name );
         renderer._addJsonKeyValuePair( parameterType, typeName );
      }
   }
   auto const list = renderer.list( attributes );
   for ( Attribute const & attribute : attributesOf( type ) ) {
      writeAttribute( renderer, attribute );
   }
}

using Row = std::vector< std::string >;

// Indented columns, as wide as their widest cells.
void writeTable( RendererV2 & renderer, std::vector< Row > const & rows ) {
   std::vector< size_t > widths;
   for ( Row const & row : rows ) {
      widths.resize( std::max( widths.size(), row.size() ) );
      for ( size_t at = 0; at + 1 < row.size(); ++at ) {
         widths[at] = std::max( widths[at], row[at].size() );
      }
   }
   for ( Row const & row : rows ) {
      renderer.write( "  " );
      for ( size_t at = 0; at + 1 < row.size(); ++at ) {
         renderer.write( "    ", JustifyLeft{ row[at], static_cast< unsigned >( widths[at] ) } );
      }
      renderer.write( "    ", std::string_view( row.back() ), '\n' );
   }
}

std::string typesOf( Vorn::AttributeOperations const & operations ) {
   std::string text( operations.keyType );
   text += operations.keyType.empty() || operations.valueType.empty() ? "" : " -> ";
   return text.append( operations.valueType );
}

// One table for each class of the line, the base classes first.
void writeAttributes( RendererV2 & renderer, TypeRecord const & type ) {
   if ( type.base() ) {
      writeAttributes( renderer, *type.base() );
   }
   std::vector< Row > rows;
   for ( AttributeRow const & row : type.attributes() ) {
      std::string operations;
      for ( std::string_view name : row.operations->names() ) {
         operations.append( operations.empty() ? "" : ", " ).append( name );
      }
      rows.push_back( { std::string( row.name ), std::string( attributeKindName( row.kind ) ),
                        typesOf( *row.operations ), operations } );
   }
   if ( !rows.empty() ) {
      renderer.write( "   attributes of ", type.name(), ":\n" );
   }
   writeTable( renderer, rows );
}

void writeText( RendererV2 & renderer, TypeRecord const & type ) {
   renderer.write( type.name(), "\n   base: ", type.base() ? type.base()->name() : "none",
                   "\n   constructor:" );
   std::vector< Row > parameters;
   for ( auto const & [name, typeName] : type.constructor()->parameters ) {
      parameters.push_back( { std::string( name ), std::string( typeName ) } );
   }
   renderer.addFrill( parameters.empty() ? " no parameters\n" : "\n" );
   writeTable( renderer, parameters );
   writeAttributes( renderer, type );
}

void listType( RendererV2 & renderer, TypeRecord const & type ) {
   if ( renderer.isJson() ) {
      renderer.startJsonRoot();
      writeMembers( renderer, type );
      renderer.endJsonRoot();
   } else {
      writeText( renderer, type );
   }
}

void listAll( RendererV2 & renderer ) {
   static constexpr JsonKey classes( "classes" );
   renderer.startJsonRoot();
   {
      auto const list = renderer.list( classes );
      for ( TypeRecord const * type : TypeRecord::sorted() ) {
         renderer.text( type->name(), '\n' );
         if ( auto const entry = renderer.listEntry(); renderer.isJson() ) {
            writeMembers( renderer, *type );
         }
      }
   }
   renderer.endJsonRoot();
}

} // namespace

void listTypes( RendererV2 & renderer, std::string_view name ) {
   if ( name.empty() ) {
      listAll( renderer );
   } else {
      listType( renderer, findType( name ) );
   }
}

} // namespace tpcli
