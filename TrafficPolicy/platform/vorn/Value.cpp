#include "TrafficPolicy/platform/vorn/Value.h"

#include "TrafficPolicy/platform/vorn/TypeRecord.h"

namespace Vorn {

namespace {

// The description of each form of a value.
struct Describe {
   std::string operator()( std::monostate ) const { return "nothing"; }
   std::string operator()( bool value ) const { return value ? "bool true" : "bool false"; }
   std::string operator()( uint32_t value ) const { return "uint32_t " + std::to_string( value ); }
   std::string operator()( uint64_t value ) const { return "uint64_t " + std::to_string( value ); }
   // Without the text, which may be long and contain any bytes.
   std::string operator()( String const & ) const { return "a string"; }
   std::string operator()( Value::Entity const & entity ) const {
      return name( "a ", entity.get() );
   }
   std::string operator()( Value::ConstEntity const & entity ) const {
      return name( "a const ", entity.get() );
   }
   static std::string name( std::string article, PtrInterface const * entity ) {
      return article.append( entity ? entity->type().name() : "null entity" );
   }
};

} // namespace

Value::Value( Value const & ) = default;
Value::Value( Value && ) noexcept = default;
Value & Value::operator=( Value const & ) = default;
Value & Value::operator=( Value && ) noexcept = default;
Value::~Value() = default;

Value Value::readOnly() const {
   auto const * entity = get< Entity >();
   return entity ? Value( ConstEntity( *entity ) ) : *this;
}

std::string Value::description() const {
   return std::visit( Describe(), content_ );
}

} // namespace Vorn
