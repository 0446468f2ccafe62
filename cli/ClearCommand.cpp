#include "cli/ClearCommand.h"

#include "cli/Errors.h"
#include "cli/ShowCommand.h"
#include "cli/Time.h"
#include "sources/StateFolder.h"
#include "sources/file/CounterStore.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tpcli {

namespace {

using TrafficPolicy::Counter;
using TrafficPolicy::NamedCounterVersion;

// Moves the snapshots of all policies but one to another store.
void moveOthers( Counter & from, Counter & to, Vorn::String const & policy ) {
   for ( auto const & [key, snapshot] : from.snapshot() ) {
      if ( !( key.policyName == policy ) ) {
         to.snapshotIs( key, snapshot );
      }
   }
   for ( auto const & [key, snapshot] : from.namedSnapshot() ) {
      if ( key.policyName == policy ) {
         continue;
      }
      NamedCounterVersion & copy = to.namedSnapshotIs( key, snapshot->uniqueId() );
      copy.totalCountIs( snapshot->totalCount() );
      for ( auto const & [intf, data] : snapshot->perIntfCount() ) {
         copy.perIntfCountIs( intf, data->uniqueId() ).countDataIs( data->countData() );
      }
   }
   for ( auto const & [key, snapshot] : to.snapshot() ) {
      from.snapshotDel( key );
   }
   for ( auto const & [key, snapshot] : to.namedSnapshot() ) {
      from.namedSnapshotDel( key );
   }
}

// Clears as if there were no other policy, and keeps what the store has of the others.
void clearPolicy( TrafficPolicy::Status const & status, Vorn::Ptr< Counter > const & store,
                  Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policy ) {
   auto const others = Vorn::create< Counter >();
   moveOthers( *store, *others, policy->name() );
   auto const alone = Vorn::create< TrafficPolicy::Status >();
   alone->perIntfCountingIs( status.perIntfCounting() );
   alone->byteCountersSupportedIs( status.byteCountersSupported() );
   alone->policyMapStatusIs( policy->name(), policy );
   TrafficPolicyCli::trafficPolicyCounterFactory( alone, store )->clearCounter();
   moveOthers( *others, *store, policy->name() );
}

// A counter that the hardware side made anew after the last clear.
struct Recreated {
   Vorn::String policy;
   Vorn::String name;
   bool isRule;
};

std::vector< Recreated > recreatedCounters( TrafficPolicy::Status const & status,
                                            Counter const & store ) {
   std::vector< Recreated > result;
   for ( auto const & [name, policy] : status.policyMapStatus() ) {
      wendo::interrupt::check();
      for ( auto const & [rule, classStatus] : policy->cmap() ) {
         auto const * snapshot = store.snapshot( TrafficPolicy::CounterKey{ { name, rule } } );
         if ( snapshot && !( snapshot->uniqueId == classStatus->uniqueId() ) ) {
            result.push_back( { name, rule, true } );
         }
      }
      for ( auto const & [counter, counterStatus] : policy->counterStatus() ) {
         auto const * snapshot =
            store.namedSnapshot( TrafficPolicy::NamedCounterKey{ { name, counter } } );
         if ( snapshot && !( snapshot->uniqueId() == counterStatus->uniqueId() ) ) {
            result.push_back( { name, counter, false } );
         }
      }
   }
   return result;
}

} // namespace

void clearCounters( Session & session, Command const & command ) {
   Workspace & workspace = session.workspace;
   std::string const path = workspace.counterStorePath();
   if ( path.empty() ) {
      throw UsageError( "a clear of this state needs --counter-store" );
   }
   workspace.readSource();
   auto const & status = workspace.state().status;
   Vorn::String const policy( command.value( Option::policy ) );
   auto const * policyStatus = status->policyMapStatus( policy );
   if ( command.has( Option::policy ) && !policyStatus ) {
      hintAtUnknownNames( session, command );
      return;
   }
   if ( !workspace.isCounterStoreNamed() ) {
      makeFoldersOf( path );
   }
   CounterStoreLock const lock( path );
   auto const store = readCounterStore( path, *status );
   if ( policyStatus ) {
      clearPolicy( *status, store, *policyStatus );
   } else {
      TrafficPolicyCli::trafficPolicyCounterFactory( status, store )->clearCounter();
   }
   if ( std::string const lost = lock.write( *store ); !lost.empty() ) {
      session.report.hint( lost );
   }
}

void writeLastClear( wendo::RendererV2 & renderer, Workspace const & workspace ) {
   using wendo::JsonKey;
   using wendo::JsonMember;
   static constexpr JsonKey lastCleared( "lastCleared" );
   static constexpr JsonKey recreated( "recreated" );
   static constexpr JsonKey policy( "policy" );
   static constexpr JsonKey rule( "rule" );
   static constexpr JsonKey counter( "counter" );
   double const time = workspace.counterStore()->timestamp();
   bool const cleared = time != 0;
   renderer.startJsonRoot();
   if ( renderer.isText() ) {
      renderer.write( std::string_view( cleared ? "Last cleared " + utcText( time ) + ", "
                                                     + spanText( currentTime() - time ) + " ago\n"
                                                : "Never cleared\n" ) );
   } else if ( cleared ) {
      renderer._addJsonKeyValuePair( lastCleared, time );
   } else {
      renderer._addJsonKeyValuePair( lastCleared, nullptr );
   }
   {
      auto const list = renderer.list( recreated );
      for ( Recreated const & one :
            recreatedCounters( *workspace.state().status, *workspace.counterStore() ) ) {
         if ( renderer.isText() ) {
            renderer.write( "Re-created since: policy ", one.policy,
                            std::string_view( one.isRule ? ", rule " : ", counter " ), one.name,
                            '\n' );
         } else {
            renderer._addJsonListEntry( JsonMember{ policy, one.policy },
                                        JsonMember{ one.isRule ? rule : counter, one.name } );
         }
      }
   }
   renderer.endJsonRoot();
}

} // namespace tpcli
