#include "TrafficPolicy/platform/values/VrfName.h"

#include <ostream>
#include <stdexcept>

namespace L3 {

VrfName::VrfName( Vorn::String const & value )
   : value_( value ) {
   if ( value.size() > maxLength ) {
      throw std::length_error( "VrfName::value::bytes > VrfName::maxLength not allowed" );
   }
}

std::ostream & operator<<( std::ostream & out, VrfName const & vrf ) {
   return out << vrf.value_;
}

} // namespace L3
