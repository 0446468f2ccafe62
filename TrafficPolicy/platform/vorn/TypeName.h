// The qualified name of a type, as text, taken from the compiler.

#pragma once

#include <cstdint>
#include <string_view>

// Outside Vorn, because compilers omit the enclosing scope from a name.
namespace VornTypeName {

template< typename T >
constexpr std::string_view qualified() {
   std::string_view function = __PRETTY_FUNCTION__;
   auto const begin = function.find( "T = " ) + 4;
   return function.substr( begin, function.find_first_of( ";]", begin ) - begin );
}

} // namespace VornTypeName

namespace Vorn {

template< typename T >
constexpr std::string_view typeName() {
   return VornTypeName::qualified< T >();
}

// Fixed-width names, because the built-in ones differ between word sizes.
template<>
constexpr std::string_view typeName< uint32_t >() {
   return "uint32_t";
}
template<>
constexpr std::string_view typeName< uint64_t >() {
   return "uint64_t";
}

} // namespace Vorn
