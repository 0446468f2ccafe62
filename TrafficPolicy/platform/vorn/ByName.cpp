#include "TrafficPolicy/platform/vorn/ByName.h"

#include <string>

namespace Vorn {

namespace {

[[noreturn]] void fail( TypeRecord const & type, AttributeRow const & row,
                        std::string_view problem ) {
   AttributeOperations const & operations = *row.operations;
   std::string text;
   text.append( type.name() ).append( "::" ).append( row.name ).append( ", " );
   text.append( attributeKindName( row.kind ) ).append( " of type " );
   text.append( operations.keyType );
   if ( !operations.keyType.empty() && !operations.valueType.empty() ) {
      text.append( " to " );
   }
   text.append( operations.valueType ).append( ", " ).append( problem );
   throw AccessError( text );
}

// The operation, which must be one that the attribute has.
template< typename Operation >
Operation * existing( Operation * operation, TypeRecord const & type, AttributeRow const & row,
                      std::string_view name ) {
   if ( !operation ) {
      fail( type, row, std::string( "has no operation " ).append( name ) );
   }
   return operation;
}

} // namespace

ByName::ByName( Value const & entity ) {
   if ( auto const * changeable = entity.get< Value::Entity >() ) {
      entity_ = *changeable;
   } else if ( auto const * fixed = entity.get< Value::ConstEntity >() ) {
      entity_ = *fixed;
      isConst_ = true;
   }
   if ( !entity_ ) {
      throw AccessError( "expected an entity, got " + entity.description() );
   }
}

AttributeRow const & ByName::row( std::string_view attribute ) const {
   AttributeRow const * row = findAttribute( type(), attribute );
   if ( !row ) {
      throw AccessError( std::string( type().name() ).append( " has no attribute " )
                         + std::string( attribute ) );
   }
   return *row;
}

void * ByName::changeable( AttributeRow const & row ) const {
   if ( isConst_ ) {
      fail( type(), row, "is part of a const object" );
   }
   return const_cast< void * >( storage( row ) );
}

Value ByName::read( std::string_view attribute ) const {
   AttributeRow const & r = row( attribute );
   return out( existing( r.operations->read, type(), r, "read" )( storage( r ) ) );
}

void ByName::write( std::string_view attribute, Value const & value ) const {
   AttributeRow const & r = row( attribute );
   existing( r.operations->write, type(), r, "write" )( changeable( r ), value, place( r ) );
}

Value ByName::lookup( std::string_view attribute, Value const & key ) const {
   AttributeRow const & r = row( attribute );
   return out(
      existing( r.operations->lookup, type(), r, "lookup" )( storage( r ), key, place( r ) ) );
}

void ByName::insert( std::string_view attribute, Value const & key, Value const & value ) const {
   AttributeRow const & r = row( attribute );
   existing( r.operations->insert, type(), r, "insert" )( changeable( r ), key, value, place( r ) );
}

Ptr< PtrInterface > ByName::create( std::string_view attribute, Value const & key ) const {
   AttributeRow const & r = row( attribute );
   return existing( r.operations->create, type(), r, "create" )( changeable( r ), key, place( r ) );
}

void ByName::erase( std::string_view attribute, Value const & key ) const {
   AttributeRow const & r = row( attribute );
   existing( r.operations->erase, type(), r, "delete" )( changeable( r ), key, place( r ) );
}

void ByName::clear( std::string_view attribute ) const {
   AttributeRow const & r = row( attribute );
   existing( r.operations->clear, type(), r, "empty" )( changeable( r ) );
}

std::vector< Entry > ByName::entries( std::string_view attribute ) const {
   AttributeRow const & r = row( attribute );
   auto result = existing( r.operations->entries, type(), r, "iterate" )( storage( r ) );
   if ( isConst_ ) {
      for ( Entry & entry : result ) {
         entry = { entry.key.readOnly(), entry.value.readOnly() };
      }
   }
   return result;
}

} // namespace Vorn
