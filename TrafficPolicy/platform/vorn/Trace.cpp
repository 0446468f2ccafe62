#include "TrafficPolicy/platform/vorn/Trace.h"

#include <iostream>

namespace Vorn {

void TraceFacility::toStandardError( TraceFacility const & facility, int level,
                                     std::string_view function, std::string_view text ) {
   std::ostringstream line;
   line << facility.name() << ' ' << level << ' ' << function << ": " << text << '\n';
   std::cerr << line.view() << std::flush;
}

} // namespace Vorn
