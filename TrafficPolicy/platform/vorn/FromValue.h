// Conversion of values to the types that classes declare. The opposite is a constructor of Value.

#pragma once

#include "TrafficPolicy/platform/vorn/AccessError.h"
#include "TrafficPolicy/platform/vorn/TypeName.h"
#include "TrafficPolicy/platform/vorn/Value.h"

#include <stdexcept>

namespace Vorn {

template< typename T >
struct FromValue {
   static_assert( !sizeof( T ), "values of this type do not travel: see Value.h" );
};

// The value's content in the form in which T travels.
template< typename T, typename Form >
Form const & contentFor( Value const & value, Place const & place ) {
   Form const * content = value.get< Form >();
   if ( !content ) {
      place.refuse( typeName< T >(), value );
   }
   return *content;
}

template<>
struct FromValue< bool > {
   static bool convert( Value const & value, Place const & place ) {
      return contentFor< bool, bool >( value, place );
   }
};

template< Number T >
struct FromValue< T > {
   static T convert( Value const & value, Place const & place ) {
      using Form = std::conditional_t< sizeof( T ) <= sizeof( uint32_t ), uint32_t, uint64_t >;
      Form const number = contentFor< T, Form >( value, place );
      T const converted = static_cast< T >( number );
      if ( static_cast< Form >( converted ) != number ) {
         place.refuse( typeName< T >(), value, "out of range" );
      }
      return converted;
   }
};

template<>
struct FromValue< String > {
   static String convert( Value const & value, Place const & place ) {
      return contentFor< String, String >( value, place );
   }
};

template< StringLike T >
struct FromValue< T > {
   static T convert( Value const & value, Place const & place ) {
      String const & text = contentFor< T, String >( value, place );
      try {
         return T( text );
      } catch ( std::logic_error const & error ) {
         place.refuse( typeName< T >(), value, error.what() );
      }
   }
};

template< typename T >
struct FromValue< Ptr< T > > {
   static Ptr< T > convert( Value const & value, Place const & place ) {
      if ( auto const * entity = value.get< Value::Entity >() ) {
         return cast( entity->get(), value, place );
      }
      if constexpr ( std::is_const_v< T > ) {
         if ( auto const * entity = value.get< Value::ConstEntity >() ) {
            return cast( entity->get(), value, place );
         }
      }
      place.refuse( typeName< Ptr< T > >(), value );
   }

private:
   // A null entity fits every class.
   template< typename From >
   static Ptr< T > cast( From * entity, Value const & value, Place const & place ) {
      T * const converted = dynamic_cast< T * >( entity );
      if ( entity && !converted ) {
         place.refuse( typeName< Ptr< T > >(), value );
      }
      return Ptr< T >( converted );
   }
};

template< typename T >
T fromValue( Value const & value, Place const & place ) {
   return FromValue< T >::convert( value, place );
}

} // namespace Vorn
