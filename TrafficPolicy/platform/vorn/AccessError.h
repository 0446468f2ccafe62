// Errors of access by name: a class, an attribute or an argument is missing or of another type.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/Value.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace Vorn {

// The text names class, attribute and expected type. Nothing was changed when it is thrown.
class TRAFFIC_POLICY_API AccessError : public std::runtime_error {
   using std::runtime_error::runtime_error;
};

// The destination of a value, for error messages. Holds views; lives no longer than the access.
struct TRAFFIC_POLICY_API Place {
   std::string_view className;
   std::string_view member; // an attribute or a parameter of the constructor
   std::string_view role = "a value";

   Place key() const { return { className, member, "a key" }; }
   // Throws AccessError: the value is not of the type, or is refused for the given reason.
   [[noreturn]] void refuse( std::string_view type, Value const & value,
                             std::string_view reason = {} ) const;
};

} // namespace Vorn
