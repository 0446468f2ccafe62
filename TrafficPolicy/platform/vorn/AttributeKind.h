// The shapes that an attribute can have.

#pragma once

#include <cstdint>
#include <string_view>

namespace Vorn {

enum class AttributeKind : uint8_t { input, scalar, orderedMap, hashedMap, set, array, children };

constexpr std::string_view attributeKindName( AttributeKind kind ) {
   switch ( kind ) {
   case AttributeKind::input:
      return "input";
   case AttributeKind::scalar:
      return "scalar";
   case AttributeKind::orderedMap:
      return "ordered map";
   case AttributeKind::hashedMap:
      return "hashed map";
   case AttributeKind::set:
      return "set";
   case AttributeKind::array:
      return "array";
   case AttributeKind::children:
      return "children";
   }
   return "";
}

} // namespace Vorn
