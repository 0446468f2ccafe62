#include "TrafficPolicy/platform/records/MatchOption.h"

#include <ostream>

namespace PolicyMap {

std::ostream & operator<<( std::ostream & out, ClassMapMatchOption option ) {
   wendo::PlainText const & name = matchOptionName( option );
   return name.empty() ? out << static_cast< uint32_t >( option ) : out << name.view();
}

} // namespace PolicyMap
