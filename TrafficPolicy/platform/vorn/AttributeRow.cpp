#include "TrafficPolicy/platform/vorn/AttributeRow.h"

namespace Vorn {

EntryList::EntryList( size_t entries ) {
   entries_.reserve( entries );
}

void EntryList::add( Value key, Value value ) {
   entries_.push_back( { std::move( key ), std::move( value ) } );
}

std::vector< std::string_view > AttributeOperations::names() const {
   std::vector< std::string_view > result;
   auto const add = [&result]( auto * operation, std::string_view name ) {
      if ( operation ) {
         result.push_back( name );
      }
   };
   add( read, "read" );
   add( write, "write" );
   add( lookup, "lookup" );
   add( insert, "insert" );
   add( create, "create" );
   add( erase, "delete" );
   add( clear, "empty" );
   add( entries, "iterate" );
   return result;
}

AttributeRow const * findAttribute( TypeRecord const & type, std::string_view name ) {
   for ( TypeRecord const * at = &type; at; at = at->base() ) {
      for ( AttributeRow const & row : at->attributes() ) {
         if ( row.name == name ) {
            return &row;
         }
      }
   }
   return nullptr;
}

} // namespace Vorn
