#include "TrafficPolicy/model/Trace.h"

namespace TrafficPolicyCli {

constinit Vorn::TraceFacility trace( "TrafficPolicyShowCliHelper",
                                     Vorn::TraceFacility::toStandardError );

} // namespace TrafficPolicyCli
