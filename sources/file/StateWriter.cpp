#include "sources/file/StateWriter.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "TrafficPolicy/views/RendererV2.h"
#include "sources/file/RuleWriter.h"

#include <algorithm>

namespace tpcli {

namespace {

using PolicyMap::PolicyMapStatus;
using PolicyMap::PolicyMapSubConfig;
using wendo::JsonKey;
using wendo::RendererV2;

// The empty name of a VRF or an interface as the key of a member. To the renderer an empty key is
// that of a list's element otherwise.
struct EmptyName {
   static constexpr bool empty() { return false; }
};
constexpr size_t room( wendo::JsonName< EmptyName > ) {
   return 3;
}
char * put( char * to, wendo::JsonName< EmptyName > ) {
   return std::copy_n( "\"\":", 3, to );
}

template< typename Value >
void addNamed( RendererV2 & renderer, Vorn::String const & name, Value const & value ) {
   if ( name.empty() ) {
      renderer._addJsonKeyValuePair( EmptyName(), value );
   } else {
      renderer._addJsonKeyValuePair( name, value );
   }
}

void addId( RendererV2 & renderer, Umbo::UniqueId const & id ) {
   static constexpr JsonKey counterId( "counterId" );
   if ( !( id == Umbo::UniqueId() ) ) {
      renderer._addJsonKeyValuePair( counterId, id.value() );
   }
}

void addCounts( RendererV2 & renderer, Umbo::UniqueId const & id,
                PolicyMap::PacketAndByte const & count ) {
   static constexpr JsonKey packets( "packets" );
   static constexpr JsonKey bytes( "bytes" );
   addId( renderer, id );
   renderer._addJsonKeyValuePair( packets, count.packets );
   renderer._addJsonKeyValuePair( bytes, count.bytes );
}

void addPolicy( RendererV2 & renderer, Vorn::String const & name,
                PolicyMap::PolicyMapConfig const * policy ) {
   static constexpr JsonKey namedCounters( "namedCounters" );
   static constexpr JsonKey rules( "rules" );
   PolicyMapSubConfig const * config = policy ? policy->currCfg().get() : nullptr;
   if ( !config ) {
      renderer._addJsonKeyValuePair( name, nullptr );
      return;
   }
   auto const object = renderer.object( name );
   {
      auto const list = renderer.list( namedCounters );
      for ( Vorn::String const & counter : config->namedCounter() ) {
         renderer._addJsonKeyValuePair( wendo::listElement, counter );
      }
   }
   auto const list = renderer.list( rules );
   for ( auto const & [sequence, rule] : config->classSequence() ) {
      wendo::interrupt::check();
      addRule( renderer, sequence, rule, *config );
   }
}

void addConfig( RendererV2 & renderer, State const & state ) {
   static constexpr JsonKey config( "config" );
   static constexpr JsonKey trafficPolicies( "trafficPolicies" );
   static constexpr JsonKey cpu( "cpu" );
   static constexpr JsonKey interfaces( "interfaces" );
   auto const object = renderer.object( config );
   {
      auto const policies = renderer.object( trafficPolicies );
      for ( auto const & [name, policy] : state.config->policyMapConfig() ) {
         addPolicy( renderer, name, policy.get() );
      }
   }
   {
      auto const bindings = renderer.object( cpu );
      for ( auto const & [vrf, policy] : state.vrfConfig->trafficPolicies() ) {
         addNamed( renderer, vrf.string(), policy );
      }
   }
   auto const bindings = renderer.object( interfaces );
   for ( auto const & [intf, policy] : state.intfConfig->intf() ) {
      addNamed( renderer, intf.string(), policy );
   }
}

void addRuleStatuses( RendererV2 & renderer, PolicyMapStatus const & policy ) {
   static constexpr JsonKey rules( "rules" );
   static constexpr JsonKey families( "families" );
   static constexpr JsonKey packets( "packets" );
   auto const object = renderer.object( rules );
   for ( auto const & [rule, status] : policy.cmap() ) {
      wendo::interrupt::check();
      auto const entry = renderer.object( rule );
      {
         auto const list = renderer.list( families );
         for ( PolicyMap::ClassMapMatchOption const family : status->match() ) {
            renderer._addJsonKeyValuePair( wendo::listElement,
                                           PolicyMap::matchOptionName( family ) );
         }
      }
      addId( renderer, status->uniqueId() );
      renderer._addJsonKeyValuePair( packets, status->packetCount() );
   }
}

void addCounters( RendererV2 & renderer, PolicyMapStatus const & policy ) {
   static constexpr JsonKey namedCounters( "namedCounters" );
   static constexpr JsonKey interfaces( "interfaces" );
   auto const object = renderer.object( namedCounters );
   for ( auto const & [name, counter] : policy.counterStatus() ) {
      auto const entry = renderer.object( name );
      addCounts( renderer, counter->uniqueId(), counter->total() );
      auto const counts = renderer.object( interfaces );
      for ( auto const & [intf, data] : counter->intfCountData() ) {
         auto const one = renderer.object( intf.string() );
         addCounts( renderer, data->uniqueId(), data->countData() );
      }
   }
}

void addInstallations( RendererV2 & renderer, PolicyMapStatus const & policy ) {
   static constexpr JsonKey interfaces( "interfaces" );
   static constexpr JsonKey statusKey( "status" );
   static constexpr JsonKey error( "error" );
   auto const object = renderer.object( interfaces );
   for ( auto const & [intf, status] : policy.intfStatus() ) {
      auto const entry = renderer.object( intf.string() );
      for ( auto const & [family, installed] : status->installed() ) {
         auto const one =
            renderer.object( Vorn::String( PolicyMap::matchOptionName( family ).view() ) );
         renderer._addJsonKeyValuePair( statusKey, uint32_t{ installed.status } );
         renderer._addJsonKeyValuePair( error, installed.error );
      }
   }
}

void addMembership( RendererV2 & renderer, State const & state ) {
   static constexpr JsonKey vrfs( "vrfs" );
   static constexpr JsonKey l3Interfaces( "l3Interfaces" );
   {
      auto const list = renderer.list( vrfs );
      for ( auto const & vrf : state.allVrfConfig->vrf() ) {
         renderer._addJsonKeyValuePair( wendo::listElement, vrf.string() );
      }
   }
   auto const members = renderer.object( l3Interfaces );
   for ( auto const & [intf, status] : state.l3IntfStatusDir->intfStatus() ) {
      if ( status ) {
         addNamed( renderer, intf.string(), status->vrf().string() );
      } else {
         addNamed( renderer, intf.string(), nullptr );
      }
   }
}

void addGranularity( RendererV2 & renderer, TrafficPolicy::CounterGranularity granularity ) {
   static constexpr JsonKey key( "ingressCounterGranularity" );
   using TrafficPolicy::CounterGranularity;
   renderer._addJsonKeyValuePair(
      key, std::string_view( granularity == CounterGranularity::perPolicy      ? "per-policy"
                             : granularity == CounterGranularity::perInterface ? "per-interface"
                                                                               : "unknown" ) );
}

void addStatus( RendererV2 & renderer, State const & state ) {
   static constexpr JsonKey statusKey( "status" );
   static constexpr JsonKey byteCounters( "byteCounters" );
   static constexpr JsonKey perInterfaceCounting( "perInterfaceCounting" );
   static constexpr JsonKey policies( "policies" );
   auto const object = renderer.object( statusKey );
   renderer._addJsonKeyValuePair( byteCounters, state.status->byteCountersSupported() );
   renderer._addJsonKeyValuePair( perInterfaceCounting, state.status->perIntfCounting() );
   if ( state.policyParamStatus ) {
      addGranularity( renderer, state.policyParamStatus->ingressCounterGranularity() );
   }
   addMembership( renderer, state );
   auto const list = renderer.object( policies );
   for ( auto const & [name, policy] : state.status->policyMapStatus() ) {
      auto const one = renderer.object( name );
      addRuleStatuses( renderer, *policy );
      addCounters( renderer, *policy );
      addInstallations( renderer, *policy );
   }
}

} // namespace

void formatState( wendo::PrintBuffer & buffer, State const & state ) {
   RendererV2 renderer( wendo::OutputFormat_t::JSON, buffer );
   renderer.startJsonRoot();
   addConfig( renderer, state );
   addStatus( renderer, state );
   renderer.endJsonRoot();
}

} // namespace tpcli
