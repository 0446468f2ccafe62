#include "bench/RecordMemory.h"

#include "TrafficPolicy/platform/vorn/Pool.h"
#include "bench/Memory.h"

#include <climits>
#include <iomanip>
#include <string>

namespace Bench {

namespace {

class Table {
public:
   Table( std::ostream & out, size_t rules )
      : out_( out )
      , rules_( static_cast< double >( rules ) ) {
      out_ << sizeof( void * ) * CHAR_BIT << " bit, " << rules << " rules\n"
           << std::setw( 44 ) << "records a rule" << std::setw( 14 ) << "bytes a rule" << '\n';
   }

   // Of the class's records. The pool rounds up to its alignment.
   template< typename Record >
   void add( char const * name ) {
      constexpr size_t block = ( sizeof( Record ) + Vorn::Pool::alignment - 1 )
                               / Vorn::Pool::alignment * Vorn::Pool::alignment;
      size_t const objects = Record::typeRecord().objects();
      records_ += objects * block;
      out_ << std::left << std::setw( 30 ) << name << std::right << std::setw( 14 )
           << static_cast< double >( objects ) / rules_ << std::setw( 14 )
           << static_cast< double >( objects * block ) / rules_ << '\n';
   }
   void add( char const * name, size_t bytes ) {
      out_ << std::left << std::setw( 44 ) << name << std::right << std::setw( 14 )
           << static_cast< double >( bytes ) / rules_ << '\n';
   }
   // The bytes of the records of all classes added.
   size_t records() const { return records_; }

private:
   std::ostream & out_;
   double rules_;
   size_t records_ = 0;
};

} // namespace

void writeRecordMemory( std::ostream & out, std::vector< PlainRule > const & rules,
                        BuildOptions const & options ) {
   size_t const before = memory.live;
   Inputs const inputs = buildPolicy( rules, options );
   size_t const live = memory.live - before;
   Vorn::Pool::Usage const pool = Vorn::Pool::usage();

   out << std::fixed << std::setprecision( 1 );
   Table table( out, rules.size() );
   table.add< PolicyMap::ClassMapSubConfig >( "definitions of classes" );
   table.add< PolicyMap::ClassMapMatch >( "match conditions of families" );
   table.add< Classification::StructuredFilter >( "filters" );
   table.add< Classification::ProtoField >( "protocol conditions" );
   table.add< PolicyMap::ClassAction >( "action lists" );
   table.add< PolicyMap::Action >( "actions without a value" );
   table.add< PolicyMap::CountAction >( "count actions" );
   table.add< PolicyMap::PoliceAction >( "police actions" );
   table.add< TrafficPolicy::SetTcAction >( "traffic class actions" );
   table.add< PolicyMap::ClassMapStatus >( "states of classes" );
   table.add( "names, rare members, small tables", pool.used - table.records() );
   table.add( "tables of the policy", live - pool.reserved );
   table.add( "unused in the pool", pool.reserved - pool.used );
   table.add( "all", live );
   out << '\n';
}

} // namespace Bench
