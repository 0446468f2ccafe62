// A value on its way to or from an attribute that is reached by its name.
//
//    what the class declares                            travels as
//    bool                                               bool
//    an enumeration, an unsigned number to 32 bits      uint32_t
//    a 64-bit unsigned number                           uint64_t
//    String, or a name made of one (L3::VrfName)        String
//    Ptr< T >                                           Ptr< PtrInterface >
//    Ptr< T const >                                     Ptr< PtrInterface const >
//
// Each type has one form and takes no other, with one exception: a slot of Ptr< T const > takes
// what may be changed, too. The opposite does not exist, so a const entity stays const on every
// way.

#pragma once

#include "TrafficPolicy/platform/vorn/Ptr.h"
#include "TrafficPolicy/platform/vorn/PtrInterface.h"
#include "TrafficPolicy/platform/vorn/String.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace Vorn {

template< typename T >
concept Number = !std::same_as< T, bool > && ( std::is_enum_v< T > || std::unsigned_integral< T > );

template< typename T >
concept GivesString = requires( T const & value ) {
   { value.string() } -> std::same_as< String const & >;
};
// Made of a String, which it may refuse by a std::logic_error, and gives that String back.
template< typename T >
concept StringLike = GivesString< T > && std::constructible_from< T, String const & >;

class Value {
public:
   using Entity = Ptr< PtrInterface >;
   using ConstEntity = Ptr< PtrInterface const >;

   // Nothing: what a lookup of an absent key gives.
   Value() = default;
   // Not inline: the operations of every attribute copy values, and none is in a hurry.
   Value( Value const & );
   Value( Value && ) noexcept;
   Value & operator=( Value const & );
   Value & operator=( Value && ) noexcept;
   ~Value();
   template< std::same_as< bool > T >
   Value( T value )
      : content_( value ) {}
   template< Number T >
   Value( T value )
      : content_( static_cast< Travelling< T > >( value ) ) {}
   Value( String value )
      : content_( std::move( value ) ) {}
   template< std::convertible_to< std::string_view > T >
   Value( T const & text )
      : content_( String( std::string_view( text ) ) ) {}
   Value( std::nullptr_t ) = delete; // a null entity is const or it is not
   template< StringLike T >
   Value( T const & name )
      : content_( name.string() ) {}
   template< typename T >
   Value( Ptr< T > entity )
      : content_(
         std::conditional_t< std::is_const_v< T >, ConstEntity, Entity >( std::move( entity ) ) ) {}

   bool isNothing() const { return get< std::monostate >() != nullptr; }
   // The content, or null when it has another form: get< uint32_t >().
   template< typename Form >
   Form const * get() const {
      return std::get_if< Form >( &content_ );
   }
   // The same value; an entity comes as const.
   Value readOnly() const;
   // What it is, for a message: "uint32_t 7", "a string", "a const PolicyMap::ClassMapMatch".
   std::string description() const;

   // Entities are equal when they are the same and const in the same way.
   friend bool operator==( Value const &, Value const & ) = default;

private:
   template< typename T >
   using Travelling = std::conditional_t< sizeof( T ) <= sizeof( uint32_t ), uint32_t, uint64_t >;

   std::variant< std::monostate, bool, uint32_t, uint64_t, String, Entity, ConstEntity > content_;
};

} // namespace Vorn
