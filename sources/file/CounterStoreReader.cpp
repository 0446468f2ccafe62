// Reading a counter store from disk.

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/FileError.h"
#include "sources/SharedNames.h"
#include "sources/file/CounterStore.h"
#include "sources/file/ValueReaders.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace tpcli {

namespace {

using TrafficPolicy::Counter;
using TrafficPolicy::CounterKey;
using TrafficPolicy::NamedCounterKey;

// Rule names as the status has them: snapshots of a policy's rules stand together, in the order in
// which the clear found the rules.
class RuleNames {
public:
   explicit RuleNames( PolicyMap::PolicyMapTypeStatus const & status )
      : status_( status ) {}

   Vorn::String get( Vorn::String const & policyName, std::string_view rule ) {
      if ( !policyName.same( policyName_ ) ) {
         policyName_ = policyName;
         auto const * policy = status_.policyMapStatus( policyName );
         names_ = FollowedNames< Rules >( policy ? &( *policy )->cmap() : nullptr );
      }
      return names_.get( rule );
   }

private:
   using Rules = Vorn::HashMap< Vorn::String, Vorn::Ptr< PolicyMap::ClassMapStatus const > >;

   PolicyMap::PolicyMapTypeStatus const & status_;
   Vorn::String policyName_;
   FollowedNames< Rules > names_{ nullptr };
};

class StoreReader {
public:
   StoreReader( Counter & store, PolicyMap::PolicyMapTypeStatus const & status )
      : store_( store )
      , ruleNames_( status ) {}

   void read( JsonValue & root ) {
      auto const rules = [&]( JsonValue & list ) {
         list.list( [&]( JsonValue v ) { readRule( v ); } );
      };
      auto const namedCounters = [&]( JsonValue & list ) {
         list.list( [&]( JsonValue v ) { readNamedCounter( v ); } );
      };
      root.object(
         required( "timestamp", [&]( JsonValue & v ) { store_.timestampIs( v.real() ); } ),
         required( "rules", rules ), required( "namedCounters", namedCounters ) );
   }

private:
   void readRule( JsonValue & value ) {
      wendo::interrupt::check();
      CounterKey key;
      std::string rule;
      TrafficPolicy::CounterVersion version;
      value.object(
         required( "policy", [&]( JsonValue & v ) { key.policyName = policyName( v ); } ),
         required( "rule", [&]( JsonValue & v ) { rule = v.name( "a rule name" ); } ),
         optional( "counterId", [&]( JsonValue & v ) { version.uniqueId = readUniqueId( v ); } ),
         optional( "packets", [&]( JsonValue & v ) { version.packets = v.number( "a count" ); } ) );
      key.name = ruleNames_.get( key.policyName, rule );
      if ( !store_.snapshotIs( key, version ) ) {
         value.fail( "a second snapshot of one rule" );
      }
   }

   void readNamedCounter( JsonValue & value ) {
      NamedCounterKey key;
      // Read before the snapshot's own id is known, which may stand behind them.
      auto const interfaces =
         Vorn::create< TrafficPolicy::NamedCounterVersion >( NamedCounterKey(), Umbo::UniqueId() );
      Counts const counts = readCounts(
         value, required( "policy", [&]( JsonValue & v ) { key.policyName = policyName( v ); } ),
         required( "counter", [&]( JsonValue & v ) { key.name = v.name( "a counter name" ); } ),
         optional( "interfaces", [&]( JsonValue & v ) { readInterfaces( v, *interfaces ); } ) );
      if ( store_.namedSnapshot( key ) ) {
         value.fail( "a second snapshot of one counter" );
      }
      auto & snapshot = store_.namedSnapshotIs( key, counts.id );
      snapshot.totalCountIs( counts.count );
      for ( auto const & [intf, data] : interfaces->perIntfCount() ) {
         snapshot.perIntfCountIs( intf, data->uniqueId() ).countDataIs( data->countData() );
      }
   }

   static void readInterfaces( JsonValue & value, TrafficPolicy::NamedCounterVersion & snapshot ) {
      value.map( [&]( std::string_view name, JsonValue v ) {
         Pelx::IntfId const intf{ Vorn::String( name ) };
         if ( snapshot.perIntfCount( intf ) ) {
            v.fail( "given twice" );
         }
         Counts const counts = readCounts( v );
         snapshot.perIntfCountIs( intf, counts.id ).countDataIs( counts.count );
      } );
   }

   Vorn::String policyName( JsonValue & value ) {
      return policies_.get( value.name( "a policy name" ) );
   }

   Counter & store_;
   RecentNames policies_;
   RuleNames ruleNames_;
};

} // namespace

Vorn::Ptr< Counter > readCounterStore( std::string const & path,
                                       PolicyMap::PolicyMapTypeStatus const & status ) {
   auto store = Vorn::create< Counter >();
   if ( path.empty() ) {
      return store;
   }
   if ( struct stat present{}; ::stat( path.c_str(), &present ) < 0 ) {
      // No file can have a name that is too long, such as a long one with the default's ending.
      if ( errno == ENOENT || errno == ENAMETOOLONG ) {
         return store;
      }
      throw FileError( path, std::strerror( errno ) );
   }
   InputFile file( path );
   readJson( file, [&]( JsonValue & root ) { StoreReader( *store, status ).read( root ); } );
   return store;
}

} // namespace tpcli
