#include "TrafficPolicy/platform/vorn/Construct.h"

#include "TrafficPolicy/platform/vorn/AttributeRow.h"

#include <string>

namespace Vorn {

Ptr< PtrInterface > construct( TypeRecord const & type, std::span< Value const > arguments ) {
   ConstructorRow const * constructor = type.constructor();
   if ( !constructor ) {
      throw AccessError( std::string( type.name() ).append( " is not a described class" ) );
   }
   auto const & parameters = constructor->parameters;
   if ( arguments.size() != parameters.size() ) {
      std::string text( type.name() );
      text.append( ": expected " ).append( std::to_string( parameters.size() ) );
      text.append( " arguments (" );
      for ( ParameterRow const & parameter : parameters ) {
         text.append( &parameter == parameters.data() ? "" : ", " );
         text.append( parameter.type ).append( " " ).append( parameter.name );
      }
      text.append( "), got " ).append( std::to_string( arguments.size() ) );
      throw AccessError( text );
   }
   return constructor->construct( arguments );
}

Ptr< PtrInterface > construct( std::string_view qualifiedName,
                               std::span< Value const > arguments ) {
   TypeRecord const * type = TypeRecord::find( qualifiedName );
   if ( !type ) {
      throw AccessError( "there is no class " + std::string( qualifiedName ) );
   }
   return construct( *type, arguments );
}

} // namespace Vorn
