#include "cli/TypesCommand.h"

// Brings in the classes, which a static library would leave out otherwise.
#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "TrafficPolicy/platform/vorn/AttributeRow.h"
#include "TrafficPolicy/platform/vorn/TypeRecord.h"
#include "cli/Errors.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace tpcli {

namespace {

using Vorn::AttributeRow;
using Vorn::TypeRecord;

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

// Calls the action for each element and writes the separator between two.
template< typename Range, typename Each >
void writeList( std::ostream & out, Range const & range, std::string_view separator,
                Each const & each ) {
   bool first = true;
   for ( auto const & element : range ) {
      out << ( std::exchange( first, false ) ? std::string_view() : separator );
      each( element );
   }
}

// C++ names need no escaping.
void writeMember( std::ostream & out, char const * name, std::string_view text ) {
   out << '"' << name << "\":\"" << text << '"';
}

void writeJson( std::ostream & out, Attribute const & attribute ) {
   Vorn::AttributeOperations const & operations = *attribute.row.operations;
   writeMember( out << '{', "name", attribute.row.name );
   writeMember( out << ',', "class", attribute.declarer.name() );
   writeMember( out << ',', "kind", attributeKindName( attribute.row.kind ) );
   if ( !operations.keyType.empty() ) {
      writeMember( out << ',', "key", operations.keyType );
   }
   if ( !operations.valueType.empty() ) {
      writeMember( out << ',', "value", operations.valueType );
   }
   out << ",\"operations\":[";
   writeList( out, operations.names(), ",",
              [&out]( std::string_view name ) { out << '"' << name << '"'; } );
   out << "]}";
}

void writeJson( std::ostream & out, TypeRecord const & type ) {
   writeMember( out << '{', "name", type.name() );
   out << ',';
   if ( type.base() ) {
      writeMember( out, "base", type.base()->name() );
   } else {
      out << "\"base\":null";
   }
   out << ",\"constructor\":[";
   writeList( out, type.constructor()->parameters, ",",
              [&out]( Vorn::ParameterRow const & parameter ) {
                 writeMember( out << '{', "name", parameter.name );
                 writeMember( out << ',', "type", parameter.type );
                 out << '}';
              } );
   out << "],\"attributes\":[";
   writeList( out, attributesOf( type ), ",",
              [&out]( Attribute const & attribute ) { writeJson( out, attribute ); } );
   out << "]}";
}

using Row = std::vector< std::string >;

// Indented columns, as wide as their widest cells.
void writeTable( std::ostream & out, std::vector< Row > const & rows ) {
   std::vector< size_t > widths;
   for ( Row const & row : rows ) {
      widths.resize( std::max( widths.size(), row.size() ) );
      for ( size_t at = 0; at + 1 < row.size(); ++at ) {
         widths[at] = std::max( widths[at], row[at].size() );
      }
   }
   for ( Row const & row : rows ) {
      out << "  ";
      for ( size_t at = 0; at + 1 < row.size(); ++at ) {
         out << "    " << row[at] << std::string( widths[at] - row[at].size(), ' ' );
      }
      out << "    " << row.back() << '\n';
   }
}

std::string typesOf( Vorn::AttributeOperations const & operations ) {
   std::string text( operations.keyType );
   text += operations.keyType.empty() || operations.valueType.empty() ? "" : " -> ";
   return text.append( operations.valueType );
}

// One table for each class of the line, the base classes first.
void writeAttributes( std::ostream & out, TypeRecord const & type ) {
   if ( type.base() ) {
      writeAttributes( out, *type.base() );
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
      out << "   attributes of " << type.name() << ":\n";
   }
   writeTable( out, rows );
}

void writeText( std::ostream & out, TypeRecord const & type ) {
   out << type.name() << "\n   base: " << ( type.base() ? type.base()->name() : "none" ) << '\n';
   std::vector< Row > parameters;
   for ( auto const & [name, typeName] : type.constructor()->parameters ) {
      parameters.push_back( { std::string( name ), std::string( typeName ) } );
   }
   out << "   constructor:" << ( parameters.empty() ? " no parameters\n" : "\n" );
   writeTable( out, parameters );
   writeAttributes( out, type );
}

} // namespace

void listTypes( std::ostream & out, std::string_view name, bool json ) {
   if ( !name.empty() ) {
      TypeRecord const & type = findType( name );
      if ( json ) {
         writeJson( out, type );
         out << '\n';
      } else {
         writeText( out, type );
      }
   } else if ( json ) {
      out << "{\"classes\":[";
      writeList( out, TypeRecord::sorted(), ",",
                 [&out]( TypeRecord const * type ) { writeJson( out, *type ); } );
      out << "]}\n";
   } else {
      for ( TypeRecord const * type : TypeRecord::sorted() ) {
         out << type->name() << '\n';
      }
   }
}

} // namespace tpcli
