// The constructor in a class's type record: it takes the class's inputs, those of its base classes
// first.

#pragma once

#include "TrafficPolicy/platform/vorn/Create.h"
#include "TrafficPolicy/platform/vorn/DescribeAttributes.h"
#include "TrafficPolicy/platform/vorn/Inputs.h"

#include <array>
#include <tuple>
#include <type_traits>
#include <utility>

namespace Vorn {

// An argument that is a T and converts to nothing else, so that parameters in another order, or of
// a type that a T merely converts to, are rejected.
template< typename T >
struct Exactly {
   template< std::same_as< T > U >
   operator U() const;
};

template< typename Class, typename Inputs = decltype( inputsOf< Class >() ) >
struct Constructor;

template< typename Class, typename... Declarer, int... line >
struct Constructor< Class, std::tuple< RowTag< Declarer, line >... > > {
   static_assert( std::is_constructible_v< Class, Exactly< StorageAt< Declarer, line > >... >,
                  "the constructor takes the VORN_INPUTs, those of the base class first" );

   static constexpr std::array< ParameterRow, sizeof...( line ) > parameters{ ParameterRow{
      declaredAt< Declarer, line >.name, typeName< StorageAt< Declarer, line > >() }... };

   // Cold: small rather than fast, and apart from the code that commands run through.
   [[gnu::cold]] static Ptr< PtrInterface >
   construct( [[maybe_unused]] std::span< Value const > values ) {
      [[maybe_unused]] size_t next = 0;
      [[maybe_unused]] auto const convert = [&]< typename T >( std::type_identity< T > ) {
         size_t const at = next++;
         return fromValue< T >( values[at], { typeName< Class >(), parameters[at].name } );
      };
      // The braces convert from left to right.
      std::tuple< StorageAt< Declarer, line >... > const arguments{ convert(
         std::type_identity< StorageAt< Declarer, line > >() )... };
      return std::apply( []( auto const &... argument ) { return create< Class >( argument... ); },
                         arguments );
   }

   static constexpr ConstructorRow row{ parameters, construct };
};

} // namespace Vorn
