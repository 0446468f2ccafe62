#include "TrafficPolicy/platform/vorn/AccessError.h"

namespace Vorn {

void Place::refuse( std::string_view type, Value const & value, std::string_view reason ) const {
   std::string text;
   text.append( className ).append( "::" ).append( member ).append( ": expected " );
   text.append( role ).append( " of type " ).append( type );
   text.append( ", got " ).append( value.description() );
   if ( !reason.empty() ) {
      text.append( ": " ).append( reason );
   }
   throw AccessError( text );
}

} // namespace Vorn
