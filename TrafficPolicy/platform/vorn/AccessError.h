// What is said when a class, an attribute or an argument is not what its user by name takes it for.

#pragma once

#include "TrafficPolicy/platform/vorn/Value.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace Vorn {

// The text names class, attribute and expected type. Nothing was changed when it is thrown.
class AccessError : public std::runtime_error {
   using std::runtime_error::runtime_error;
};

// Where a value is about to go, for the error that it may cause. Views: lives no longer than the
// access.
struct Place {
   std::string_view className;
   std::string_view member; // an attribute or a parameter of the constructor
   std::string_view role = "a value";

   Place key() const { return { className, member, "a key" }; }
   // The value is not of the type, or is outside its range for the given reason.
   [[noreturn]] void refuse( std::string_view type, Value const & value,
                             std::string_view reason = {} ) const;
};

} // namespace Vorn
