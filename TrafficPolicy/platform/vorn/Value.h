// A value that is read from or written to an attribute by name.
//
//    declared type                                      form of the value
//    bool                                               bool
//    an enumeration, an unsigned number to 32 bits      uint32_t
//    a 64-bit unsigned number                           uint64_t
//    String, or a name made of one (L3::VrfName)        String
//    Ptr< T >                                           Ptr< PtrInterface >
//    Ptr< T const >                                     Ptr< PtrInterface const >
//
// Each type takes its own form only, with one exception: a Ptr< T const > takes an entity that is
// not const, too. There is no way back, so a const entity stays const.

#pragma once

#include "TrafficPolicy/platform/Export.h"
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
// Constructed from a String, which it may refuse with a std::logic_error, and returns that String.
template< typename T >
concept StringLike = GivesString< T > && std::constructible_from< T, String const & >;

class TRAFFIC_POLICY_API Value {
public:
   using Entity = Ptr< PtrInterface >;
   using ConstEntity = Ptr< PtrInterface const >;

   // Nothing: the result of looking up an absent key.
   Value() = default;
   // Not inline: the operations of every attribute copy values, and none of them is hot.
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
   // The content, or null when the value has another form: get< uint32_t >().
   template< typename Form >
   Form const * get() const {
      return std::get_if< Form >( &content_ );
   }
   // The same value; an entity becomes const.
   Value readOnly() const;
   // A description for messages: "uint32_t 7", "a string", "a const PolicyMap::ClassMapMatch".
   std::string description() const;

   // Entities are equal when they are the same object and both const or both not.
   friend bool operator==( Value const &, Value const & ) = default;

private:
   template< typename T >
   using Travelling = std::conditional_t< sizeof( T ) <= sizeof( uint32_t ), uint32_t, uint64_t >;

   std::variant< std::monostate, bool, uint32_t, uint64_t, String, Entity, ConstEntity > content_;
};

} // namespace Vorn
