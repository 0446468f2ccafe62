// Classes and attributes by name: what is registered, what access does, what it refuses.

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "TrafficPolicy/model/PolicyStateCpu.h"
#include "TrafficPolicy/platform/vorn/ByName.h"
#include "TrafficPolicy/platform/vorn/Construct.h"
#include "TrafficPolicy/platform/vorn/Describe.h"
#include "cli/Errors.h"
#include "cli/TypesCommand.h"
#include "tests/Support.h"

#include <gmock/gmock.h>

#include <functional>

namespace TypeRegistration {

using namespace Vorn;
using testing::HasSubstr;

class Lamp : public PtrInterface {
   VORN_ENTITY( Lamp, PtrInterface )

   explicit Lamp( uint8_t watts )
      : watts_( watts ) {}

   VORN_SCALAR( uint64_t, hours )
   VORN_INPUT( uint8_t, watts )
   VORN_SCALAR( Ptr< Lamp >, neighbour )
};

class NamedLamp : public Lamp {
   VORN_ENTITY( NamedLamp, Lamp )

   NamedLamp( uint8_t watts, String const & name )
      : Lamp( watts )
      , name_( name ) {
      if ( name.empty() ) {
         throw std::domain_error( "a lamp without a name" );
      }
   }

   VORN_INPUT( String, name )
   VORN_HASHED_CHILDREN( uint8_t, Lamp, bulb )
};

VORN_TYPE( Lamp )
VORN_TYPE( NamedLamp )

using ConstEntity = Value::ConstEntity;
using Entries = std::vector< Entry >;

Ptr< PtrInterface > policy() {
   return construct( "TrafficPolicyCli::PolicyStateCpu", std::array{ Value( "edge" ) } );
}

// Some value of the type; the flag tells two values apart.
Value sample( std::string_view type, bool flag ) {
   if ( type == "Vorn::String" || type == "L3::VrfName" ) {
      return flag ? "one" : "other";
   }
   if ( type.starts_with( "Vorn::Ptr<" ) ) {
      bool const isConst = type.starts_with( "Vorn::Ptr<const " );
      return isConst ? Value( ConstEntity() ) : Value( Value::Entity() );
   }
   return type == "bool" ? Value( flag ) : Value( flag ? 1u : 0u );
}

std::string messageOf( std::function< void() > const & action ) {
   try {
      action();
   } catch ( AccessError const & error ) {
      return error.what();
   }
   return "no error";
}

// Each parameter in turn gets the other value of its type, then one of a wrong type.
TEST( TypeRegistration, everyClassIsBuiltFromItsArguments ) {
   EXPECT_EQ( TypeRecord::sorted().size(), 13u + 2u );
   for ( TypeRecord const * type : TypeRecord::sorted() ) {
      SCOPED_TRACE( type->name() );
      auto const & parameters = type->constructor()->parameters;
      std::vector< Value > arguments;
      for ( auto const & parameter : parameters ) {
         arguments.push_back( sample( parameter.type, true ) );
      }
      for ( size_t at = 0; at < parameters.size(); ++at ) {
         auto changed = arguments;
         changed[at] = sample( parameters[at].type, false );
         ByName const object( construct( *type, changed ) );
         EXPECT_EQ( &object.type(), type );
         EXPECT_EQ( type->objects(), 1u );
         EXPECT_GE( type->bytes(), sizeof( PtrInterface ) );
         for ( size_t i = 0; i < parameters.size(); ++i ) {
            EXPECT_EQ( object.read( parameters[i].name ), changed[i] ) << parameters[i].name;
         }
         changed[at] = uint64_t{ 1 };
         EXPECT_THAT( messageOf( [&] { construct( *type, changed ); } ),
                      AllOf( HasSubstr( type->name() ), HasSubstr( parameters[at].name ),
                             HasSubstr( parameters[at].type ) ) );
      }
      EXPECT_NO_THROW( construct( *type, arguments ) );
      arguments.emplace_back( true );
      EXPECT_THAT( messageOf( [&] { construct( *type, arguments ); } ), HasSubstr( "arguments" ) );
      EXPECT_EQ( type->objects(), 0u );
      EXPECT_EQ( type->bytes(), 0u );
   }
   Value const nameless[] = { 60u, "" };
   EXPECT_THROW( construct( NamedLamp::typeRecord(), nameless ), std::domain_error );
   EXPECT_EQ( NamedLamp::typeRecord().objects(), 0u );
   EXPECT_THROW( construct( "NoClass", {} ), AccessError );
}

TEST( TypeRegistration, attributesOfEachKind ) {
   ByName const object( policy() );
   EXPECT_EQ( object.read( "name" ), "edge" );
   object.write( "ruleCount", 7u );
   EXPECT_EQ( object.read( "ruleCount" ), 7u );

   Ptr< PolicyMap::ClassMapMatch const > const match(
      create< PolicyMap::ClassMapMatch >( PolicyMap::ClassMapMatchOption::ipv4 ) );
   object.insert( "classMapConfig", 5u, match );
   EXPECT_EQ( object.entries( "classMapConfig" ), ( Entries{ { 5u, match } } ) );
   EXPECT_EQ( object.lookup( "classMapConfig", 9u ), ConstEntity() );
   object.erase( "classMapConfig", 5u );
   EXPECT_TRUE( object.entries( "classMapConfig" ).empty() );

   object.insert( "namedCounter", "b", true );
   object.insert( "namedCounter", "a", true );
   object.insert( "namedCounter", "b", false );
   EXPECT_EQ( object.entries( "namedCounter" ), ( Entries{ { "a", true }, { "b", false } } ) );
   EXPECT_TRUE( object.lookup( "namedCounter", "c" ).isNothing() );
   for ( auto const & [key, value] : object.entries( "namedCounter" ) ) {
      object.erase( "namedCounter", key );
   }
   EXPECT_TRUE( object.entries( "namedCounter" ).empty() );

   object.insert( "matchOptionList", 1u );
   EXPECT_EQ( object.lookup( "matchOptionList", 1u ), true );
   object.clear( "matchOptionList" );
   EXPECT_EQ( object.lookup( "matchOptionList", 1u ), false );

   auto const child = object.create( "appliedVrf", PolicyMap::ClassMapMatchOption::ipv6 );
   EXPECT_EQ( object.create( "appliedVrf", 1u ), child );
   EXPECT_EQ( object.lookup( "appliedVrf", 1u ), child );
   ByName( child ).insert( "vrfList", L3::VrfName( "red" ), true );
   EXPECT_EQ( ByName( child ).lookup( "vrfList", "red" ), true );
}

TEST( TypeRegistration, whatDoesNotFitIsRefusedAndChangesNothing ) {
   auto const entity = policy();
   ByName const object( entity );
   ByName const fixed{ ConstEntity( entity ) };
   auto const child = object.create( "appliedVrf", 0u );
   ByName const lamp( create< NamedLamp >( uint8_t{ 60 }, "desk" ) );
   ConstEntity const constLamp( create< Lamp >( uint8_t{ 5 } ) );
   std::string const longName( L3::VrfName::maxLength + 1, 'x' );

   struct Case {
      std::function< void() > action;
      char const * text;
   };
   Case const cases[] = {
      { [&] { object.read( "colour" ); }, "PolicyStateCpu has no attribute colour" },
      { [&] { object.write( "ruleCount", true ); },
        "ruleCount: expected a value of type uint32_t" },
      { [&] { object.write( "name", "core" ); }, "name, input of type Vorn::String, has no" },
      { [&] { object.read( "namedCounter" ); }, "of type Vorn::String to bool, has no operation" },
      { [&] { object.insert( "namedCounter", 1u, true ); }, "a key of type Vorn::String" },
      { [&] { object.insert( "namedCounter", "a" ); }, "a value of type bool, got nothing" },
      { [&] { object.insert( "matchOptionList", 1u, true ); }, "a set has keys only" },
      { [&] { object.insert( "configuredVrf", longName, true ); },
        "L3::VrfName, got a string: Vrf" },
      { [&] { object.create( "vrfIntfStatus", longName ); }, "vrfIntfStatus: expected a key" },
      { [&] { object.insert( "appliedVrf", 0u, child ); }, "has no operation insert" },
      { [&] { object.insert( "classMapConfig", 2003003u, ConstEntity() ); }, "beyond the array" },
      { [&] { object.insert( "classMapConfig", 1u, child ); }, "got a TrafficPolicyCli::PerAfVrf" },
      { [&] { object.write( "counter", child ); }, "Vorn::Ptr<const TrafficPolicy::Counter>" },
      { [&] { fixed.write( "ruleCount", 1u ); }, "ruleCount, scalar of type uint32_t, is part of" },
      { [&] { fixed.clear( "appliedVrf" ); }, "part of a const object" },
      { [&] { fixed.create( "failedVrf", 0u ); }, "part of a const object" },
      { [&] { ByName( fixed.lookup( "appliedVrf", 0u ) ).clear( "vrfList" ); }, "const object" },
      { [&] { ByName( fixed.entries( "appliedVrf" )[0].value ).clear( "vrfList" ); }, "const obj" },
      { [&] { lamp.create( "bulb", 256u ); }, "got uint32_t 256: out of range" },
      { [&] { lamp.write( "neighbour", constLamp ); }, "got a const TypeRegistration::Lamp" },
      { [&] { ByName{ Value( 1u ) }; }, "expected an entity" },
   };
   for ( auto const & [action, text] : cases ) {
      EXPECT_THAT( messageOf( action ), HasSubstr( text ) );
   }
   EXPECT_EQ( object.read( "ruleCount" ), 0u );
   for ( char const * collection : { "namedCounter", "matchOptionList", "configuredVrf",
                                     "vrfIntfStatus", "classMapConfig", "failedVrf" } ) {
      EXPECT_TRUE( object.entries( collection ).empty() ) << collection;
   }
   EXPECT_EQ( fixed.lookup( "appliedVrf", 0u ), ConstEntity( child ) );
   EXPECT_TRUE( lamp.entries( "bulb" ).empty() );
   EXPECT_EQ( lamp.read( "neighbour" ), Value::Entity() );
}

// What `types NAME` writes.
std::string listed( std::string_view name, wendo::OutputFormat_t format ) {
   test::TextBuffer buffer;
   wendo::RendererV2 renderer( format, buffer );
   tpcli::listTypes( renderer, name );
   return buffer.text();
}

TEST( TypeRegistration, typesAreListed ) {
   using enum wendo::OutputFormat_t;
   EXPECT_EQ( listed( "NamedLamp", TEXT ), R"(TypeRegistration::NamedLamp
   base: TypeRegistration::Lamp
   constructor:
      watts    unsigned char
      name     Vorn::String
   attributes of TypeRegistration::Lamp:
      hours        scalar    uint64_t                             read, write
      watts        input     unsigned char                        read
      neighbour    scalar    Vorn::Ptr<TypeRegistration::Lamp>    read, write
   attributes of TypeRegistration::NamedLamp:
      name    input       Vorn::String                                          read
      bulb    children    unsigned char -> Vorn::Ptr<TypeRegistration::Lamp>    )"
                                           "lookup, create, delete, empty, iterate\n" );
   EXPECT_THAT( listed( "PerAfVrfList", JSON ),
                HasSubstr( R"("key":"L3::VrfName","value":"bool","operations":["lo)" ) );
   EXPECT_THROW( listed( "Status", TEXT ), tpcli::UsageError );
}

} // namespace TypeRegistration
