#include "TrafficPolicy/platform/values/IntfId.h"

#include <ostream>

namespace Pelx {

std::ostream & operator<<( std::ostream & out, IntfId const & intf ) {
   return out << intf.value_;
}

} // namespace Pelx
