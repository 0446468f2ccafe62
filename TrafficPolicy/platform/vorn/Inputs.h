// The inputs of a class, those of its base classes first, and a constructor made from them.
//
//    class Lamp : public Vorn::PtrInterface {
//       VORN_ENTITY( Lamp, Vorn::PtrInterface )
//       VORN_INPUT( Vorn::String, name )
//       VORN_INPUT( bool, dimmed )
//       VORN_CONSTRUCTOR( Lamp ) // Lamp( Vorn::String name, bool dimmed )
//    };

#pragma once

#include "TrafficPolicy/platform/vorn/DeclaredLines.h"

#include <concepts>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

namespace Vorn {

// The input that the line declares, in a tuple of one; an empty one for another attribute.
template< typename Class, int line >
constexpr auto inputAt() {
   if constexpr ( declaredAt< Class, line >.kind == AttributeKind::input ) {
      return std::tuple< RowTag< Class, line > >();
   } else {
      return std::tuple<>();
   }
}

// The inputs, in the order of the constructor's parameters.
template< typename Class >
constexpr auto inputsOf() {
   if constexpr ( std::is_same_v< Class, PtrInterface > ) {
      return std::tuple<>();
   } else {
      return []< size_t... i >( std::index_sequence< i... > ) {
         return std::tuple_cat( inputsOf< typename Class::VornBase >(),
                                inputAt< Class, declaredLines< Class >[i] >()... );
      }
      ( std::make_index_sequence< declaredLines< Class >.size() >() );
   }
}

template< typename Class, typename Inputs = decltype( inputsOf< Class >() ) >
struct InputSetter;

template< typename Class, typename... Declarer, int... line >
struct InputSetter< Class, std::tuple< RowTag< Declarer, line >... > > {
   template< typename... Arguments >
   static constexpr bool takes() {
      if constexpr ( sizeof...( Arguments ) == sizeof...( line ) ) {
         return ( std::convertible_to< Arguments, StorageAt< Declarer, line > > && ... );
      } else {
         return false;
      }
   }
   template< typename... Arguments >
   static void set( Class & object, Arguments &&... arguments ) {
      ( ( static_cast< Declarer & >( object ).*declaredAt< Declarer, line >.storage =
             std::forward< Arguments >( arguments ) ),
        ... );
   }
};

// The arguments convert to the class's inputs, one for each, in their order.
template< typename Class, typename... Arguments >
concept InputsOf = InputSetter< Class >::template takes< Arguments... >();

} // namespace Vorn

// The constructor that takes the class's inputs in their order, those of the base classes first.
// Each base class has one too, or is PtrInterface.
#define VORN_CONSTRUCTOR( Class )                                                                  \
   VORN_INPUT_CONSTRUCTOR( Class )                                                                 \
protected:                                                                                         \
   Class() = default;                                                                              \
                                                                                                   \
public:

// The same for a class that defines its default constructor itself.
#define VORN_INPUT_CONSTRUCTOR( Class )                                                            \
public:                                                                                            \
   template< typename... Inputs >                                                                  \
      requires Vorn::InputsOf< Class, Inputs... >                                                  \
   explicit Class( Inputs &&... inputs )                                                           \
      : Class() {                                                                                  \
      Vorn::InputSetter< Class >::set( *this, std::forward< Inputs >( inputs )... );               \
   }
