// Construction of an entity whose class is known at run time only.
//
//    Vorn::Value const arguments[] = { config, status, counter, "edge-in", false, ... };
//    auto const show = Vorn::construct( "TrafficPolicyCli::ShowTrafficPolicyCpu", arguments );

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/Ptr.h"
#include "TrafficPolicy/platform/vorn/PtrInterface.h"
#include "TrafficPolicy/platform/vorn/TypeRecord.h"
#include "TrafficPolicy/platform/vorn/Value.h"

#include <span>
#include <string_view>

namespace Vorn {

// Creates an object of the class as its factory does. The arguments are the constructor's, in its
// order. Throws AccessError when their number or a type is wrong, or when there is no such class;
// exceptions of the constructor pass.
TRAFFIC_POLICY_API Ptr< PtrInterface > construct( TypeRecord const & type,
                                                  std::span< Value const > arguments );
TRAFFIC_POLICY_API Ptr< PtrInterface > construct( std::string_view qualifiedName,
                                                  std::span< Value const > arguments );

} // namespace Vorn
