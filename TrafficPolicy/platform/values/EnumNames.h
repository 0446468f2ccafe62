// The names of an enumeration: one table for writers and readers.
//
//    constexpr wendo::PlainText nameOf( RateUnit unit ) {
//       switch ( unit ) { // no default: the compiler finds an enumerator without a name
//       case RateUnit::bps:
//          return "bps";
//       ...
//       }
//       return {};
//    }
//    inline constexpr Names::EnumNames< RateUnit, 5 > rateUnits( nameOf );

#pragma once

#include "TrafficPolicy/platform/vorn/Assert.h"
#include "TrafficPolicy/platform/wendo/PlainText.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>

namespace Names {

// For an enumeration whose values are those below the count. An enumerator at the count, as one
// that was added without raising it, does not compile.
template< typename Enum, size_t count >
class EnumNames {
public:
   consteval explicit EnumNames( wendo::PlainText ( *nameOf )( Enum ) ) {
      for ( size_t value = 0; value < count; ++value ) {
         names_[value] = nameOf( Enum{ static_cast< std::underlying_type_t< Enum > >( value ) } );
      }
      VORN_ASSERT(
         nameOf( Enum{ static_cast< std::underlying_type_t< Enum > >( count ) } ).empty() );
   }

   // The value's name; empty for a value that has none or is outside the enumeration.
   constexpr wendo::PlainText const & operator[]( Enum value ) const {
      auto const number = static_cast< size_t >( value );
      return names_[number < count ? number : count];
   }
   // The value with this name, or nothing.
   constexpr std::optional< Enum > find( std::string_view name ) const {
      for ( size_t value = 0; value < count; ++value ) {
         if ( !name.empty() && names_[value].view() == name ) {
            return Enum{ static_cast< std::underlying_type_t< Enum > >( value ) };
         }
      }
      return std::nullopt;
   }

private:
   std::array< wendo::PlainText, count + 1 > names_; // the last one is empty
};

} // namespace Names
