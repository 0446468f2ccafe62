// The status: what the hardware side has processed, and its counts.

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/SharedNames.h"
#include "sources/file/StateReader.h"
#include "sources/file/ValueReaders.h"

#include <vector>

namespace tpcli {

namespace {

using PolicyMap::ClassMapStatus;
using PolicyMap::IntfStatus;
using PolicyMap::PacketDataStatus;
using PolicyMap::PolicyMapStatus;
using TrafficPolicy::CounterGranularity;

Vorn::Ptr< ClassMapStatus const > readRule( Vorn::String const & name, JsonValue & value ) {
   auto const rule = Vorn::create< ClassMapStatus >( name );
   auto const families = [&]( JsonValue & list ) {
      list.list( [&]( JsonValue v ) {
         if ( !rule->matchIs( familyOf( v.string(), v ) ) ) {
            v.fail( "the family stands in the list twice" );
         }
         if ( rule->matchs() > 1 ) {
            v.fail( "a rule is programmed for one family at most" );
         }
      } );
   };
   auto const packets = [&]( JsonValue & v ) { rule->packetCountIs( v.number( "a count" ) ); };
   value.object(
      optional( "families", families ),
      optional( "counterId", [&]( JsonValue & v ) { rule->uniqueIdIs( readUniqueId( v ) ); } ),
      optional( "packets", packets ) );
   return rule;
}

// The rules' names are usually those of the configuration, in its order, and then share them.
void readRules( JsonValue & value, State const & state, PolicyMapStatus & policy ) {
   using Classes = Vorn::HashMap< Vorn::String, Vorn::Ptr< PolicyMap::ClassMapSubConfig const > >;
   auto const * config = state.config->policyMapConfig( policy.name() );
   auto const * subConfig = config ? ( *config )->currCfg().get() : nullptr;
   Classes const * classes = subConfig ? &subConfig->rawClassMap() : nullptr;
   FollowedNames< Classes > names( classes );
   if ( classes ) {
      policy.cmapReserve( classes->size() );
   }
   value.map( [&]( std::string_view text, JsonValue v ) {
      wendo::interrupt::check();
      if ( text.empty() ) {
         v.fail( "empty, where a rule name is needed" );
      }
      names.prefetch( policy.cmap() );
      Vorn::String const name = names.get( text );
      if ( !policy.cmapIs( name, readRule( name, v ) ) ) {
         v.fail( "given twice" );
      }
   } );
}

void readInterfaceCounts( JsonValue & value, PacketDataStatus & counter ) {
   value.map( [&]( std::string_view name, JsonValue v ) {
      Pelx::IntfId const intf{ Vorn::String( name ) };
      Counts const counts = readCounts( v );
      auto const data = Vorn::create< PolicyMap::IntfCountData >( intf, counts.id );
      data->countDataIs( counts.count );
      if ( !counter.intfCountDataIs( intf, data ) ) {
         v.fail( "given twice" );
      }
   } );
}

void readNamedCounters( JsonValue & value, PolicyMapStatus & policy ) {
   value.map( [&]( std::string_view text, JsonValue v ) {
      if ( text.empty() ) {
         v.fail( "empty, where a counter name is needed" );
      }
      Vorn::String const name( text );
      auto const counter = Vorn::create< PacketDataStatus >( name );
      auto const interfaces = [&]( JsonValue & map ) { readInterfaceCounts( map, *counter ); };
      Counts const counts = readCounts( v, optional( "interfaces", interfaces ) );
      counter->uniqueIdIs( counts.id );
      counter->totalIs( counts.count );
      if ( !policy.counterStatusIs( name, counter ) ) {
         v.fail( "given twice" );
      }
   } );
}

PolicyMap::InstalledStatus readInstalled( JsonValue & value ) {
   using PolicyMap::InstalledStatus;
   InstalledStatus installed;
   auto const status = [&]( JsonValue & v ) {
      installed.status = v.isNumber() ? static_cast< uint8_t >( v.number( "a status code", 255 ) )
                                      : readNamed( v, PolicyMap::installedStatusNames );
   };
   value.object( required( "status", status ),
                 optional( "error", [&]( JsonValue & v ) { installed.error = v.string(); } ) );
   return installed;
}

void readInstallations( JsonValue & value, PolicyMapStatus & policy ) {
   value.map( [&]( std::string_view name, JsonValue v ) {
      auto const intf = Vorn::create< IntfStatus >();
      v.map( [&]( std::string_view family, JsonValue installed ) {
         auto const option = familyOf( family, installed );
         if ( !intf->installedIs( option, readInstalled( installed ) ) ) {
            installed.fail( "given twice" );
         }
      } );
      if ( !policy.intfStatusIs( Pelx::IntfId( name ), intf ) ) {
         v.fail( "given twice" );
      }
   } );
}

void readPolicies( JsonValue & value, State & state ) {
   value.map( [&]( std::string_view text, JsonValue v ) {
      if ( text.empty() ) {
         v.fail( "empty, where a policy name is needed" );
      }
      Vorn::String const name( text );
      auto const policy = Vorn::create< PolicyMapStatus >( name );
      v.object(
         optional( "rules", [&]( JsonValue & m ) { readRules( m, state, *policy ); } ),
         optional( "namedCounters", [&]( JsonValue & m ) { readNamedCounters( m, *policy ); } ),
         optional( "interfaces", [&]( JsonValue & m ) { readInstallations( m, *policy ); } ) );
      if ( !state.status->policyMapStatusIs( name, policy ) ) {
         v.fail( "given twice" );
      }
   } );
}

void readVrfs( JsonValue & value, Ip::AllVrfConfig & vrfs ) {
   value.list( [&]( JsonValue v ) {
      if ( !vrfs.vrfIs( readVrf( v ) ) ) {
         v.fail( "the VRF stands in the list twice" );
      }
   } );
}

void readL3Interfaces( JsonValue & value, L3::Intf::StatusDir & interfaces ) {
   value.map( [&]( std::string_view name, JsonValue v ) {
      Vorn::Ptr< L3::Intf::Status const > status;
      if ( !v.null() ) {
         status = Vorn::create< L3::Intf::Status >( readVrf( v ) );
      }
      if ( !interfaces.intfStatusIs( Pelx::IntfId( name ), status ) ) {
         v.fail( "given twice" );
      }
   } );
}

CounterGranularity readGranularity( JsonValue & value ) {
   return readEnum( value, TrafficPolicy::counterGranularities, CounterGranularity::perInterface,
                    CounterGranularity::perPolicy, CounterGranularity::unknown );
}

} // namespace

void readStatus( JsonValue & value, State & state ) {
   TrafficPolicy::Status & status = *state.status;
   auto const byteCounters = [&]( JsonValue & v ) {
      status.byteCountersSupportedIs( v.boolean() );
   };
   auto const perInterface = [&]( JsonValue & v ) { status.perIntfCountingIs( v.boolean() ); };
   auto const granularity = [&]( JsonValue & v ) {
      state.policyParamStatus = Vorn::create< TrafficPolicy::TrafficPolicyIntfParamStatus >();
      state.policyParamStatus->ingressCounterGranularityIs( readGranularity( v ) );
   };
   value.object(
      optional( "byteCounters", byteCounters ), optional( "perInterfaceCounting", perInterface ),
      optional( "ingressCounterGranularity", granularity ),
      optional( "vrfs", [&]( JsonValue & v ) { readVrfs( v, *state.allVrfConfig ); } ),
      optional( "l3Interfaces",
                [&]( JsonValue & v ) { readL3Interfaces( v, *state.l3IntfStatusDir ); } ),
      optional( "policies", [&]( JsonValue & v ) { readPolicies( v, state ); } ) );
}

} // namespace tpcli
