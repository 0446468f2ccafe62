#include "sources/file/StateWriter.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "TrafficPolicy/views/RendererV2.h"
#include "sources/file/RuleWriter.h"

#include <algorithm>

namespace tpcli {

namespace {

using PolicyMap::PolicyMapStatus;
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

void addPolicies( RendererV2 & renderer, TrafficPolicy::TrafficPolicyConfig const & config ) {
   static constexpr JsonKey trafficPolicies( "trafficPolicies" );
   static constexpr JsonKey namedCounters( "namedCounters" );
   static constexpr JsonKey rules( "rules" );
   auto const all = renderer.object( trafficPolicies );
   for ( auto const & [name, policy] : config.policyMapConfig() ) {
      auto const * current = policy ? policy->currCfg().get() : nullptr;
      if ( !current ) {
         renderer._addJsonKeyValuePair( name, nullptr );
         continue;
      }
      auto const open = renderer.object( name );
      if ( !current->namedCounter().empty() ) {
         auto const list = renderer.list( namedCounters );
         for ( Vorn::String const & counter : current->namedCounter() ) {
            renderer._addJsonKeyValuePair( wendo::listElement, counter );
         }
      }
      auto const list = renderer.list( rules );
      for ( auto const & [sequence, rule] : current->classSequence() ) {
         wendo::interrupt::check();
         addRule( renderer, *current, sequence, rule );
      }
   }
}

// One policy as its name, several as a list.
template< typename Bound, typename Binding >
void addBindings( RendererV2 & renderer, JsonKey const & key, Bound const & bound,
                  FurtherPolicies< Binding > const & further ) {
   if ( bound.empty() ) {
      return;
   }
   auto const all = renderer.object( key );
   for ( auto const & [binding, policy] : bound ) {
      auto const * others = further.at( binding );
      if ( !others ) {
         addNamed( renderer, binding.string(), policy );
         continue;
      }
      auto const list = renderer.list( binding.string() );
      renderer._addJsonKeyValuePair( wendo::listElement, policy );
      for ( Vorn::String const & other : *others ) {
         renderer._addJsonKeyValuePair( wendo::listElement, other );
      }
   }
}

void addConfig( RendererV2 & renderer, State const & state ) {
   static constexpr JsonKey config( "config" );
   static constexpr JsonKey cpu( "cpu" );
   static constexpr JsonKey interfaces( "interfaces" );
   auto const open = renderer.object( config );
   addPolicies( renderer, *state.config );
   addBindings( renderer, cpu, state.vrfConfig->trafficPolicies(), *state.furtherVrfPolicies );
   addBindings( renderer, interfaces, state.intfConfig->intf(), *state.furtherIntfPolicies );
}

void addId( RendererV2 & renderer, Umbo::UniqueId const & id ) {
   static constexpr JsonKey counterId( "counterId" );
   if ( !( id == Umbo::UniqueId() ) ) {
      renderer._addJsonKeyValuePair( counterId, id.value() );
   }
}

constexpr JsonKey packetsKey( "packets" );

void addCounts( RendererV2 & renderer, Umbo::UniqueId const & id,
                PolicyMap::PacketAndByte const & count ) {
   static constexpr JsonKey bytes( "bytes" );
   addId( renderer, id );
   renderer._addJsonKeyValuePair( packetsKey, count.packets );
   renderer._addJsonKeyValuePair( bytes, count.bytes );
}

void addRuleStatuses( RendererV2 & renderer, PolicyMapStatus const & policy ) {
   static constexpr JsonKey rules( "rules" );
   static constexpr JsonKey families( "families" );
   auto const all = renderer.object( rules );
   for ( auto const & [name, rule] : policy.cmap() ) {
      wendo::interrupt::check();
      if ( !rule ) {
         continue;
      }
      auto const open = renderer.object( name );
      {
         auto const list = renderer.list( families );
         for ( auto const family : rule->match() ) {
            renderer._addJsonKeyValuePair( wendo::listElement,
                                           PolicyMap::matchOptionName( family ).view() );
         }
      }
      addId( renderer, rule->uniqueId() );
      renderer._addJsonKeyValuePair( packetsKey, rule->packetCount() );
   }
}

void addNamedCounters( RendererV2 & renderer, PolicyMapStatus const & policy ) {
   static constexpr JsonKey namedCounters( "namedCounters" );
   static constexpr JsonKey interfaces( "interfaces" );
   auto const all = renderer.object( namedCounters );
   for ( auto const & [name, counter] : policy.counterStatus() ) {
      wendo::interrupt::check();
      if ( !counter ) {
         continue;
      }
      auto const open = renderer.object( name );
      addCounts( renderer, counter->uniqueId(), counter->total() );
      auto const list = renderer.object( interfaces );
      for ( auto const & [intf, data] : counter->intfCountData() ) {
         if ( data ) {
            auto const entry = renderer.object( intf.string() );
            addCounts( renderer, data->uniqueId(), data->countData() );
         }
      }
   }
}

void addInstallations( RendererV2 & renderer, PolicyMapStatus const & policy ) {
   static constexpr JsonKey interfaces( "interfaces" );
   static constexpr JsonKey status( "status" );
   static constexpr JsonKey error( "error" );
   auto const all = renderer.object( interfaces );
   for ( auto const & [intf, families] : policy.intfStatus() ) {
      wendo::interrupt::check();
      if ( !families ) {
         continue;
      }
      auto const open = renderer.object( intf.string() );
      for ( auto const & [family, installed] : families->installed() ) {
         auto const entry = renderer.object( PolicyMap::matchOptionName( family ).view() );
         renderer._addJsonKeyValuePair( status, unsigned{ installed.status } );
         if ( !installed.error.empty() ) {
            renderer._addJsonKeyValuePair( error, installed.error );
         }
      }
   }
}

void addPolicyStatuses( RendererV2 & renderer, TrafficPolicy::Status const & status ) {
   static constexpr JsonKey policies( "policies" );
   auto const all = renderer.object( policies );
   for ( auto const & [name, policy] : status.policyMapStatus() ) {
      if ( policy ) {
         auto const open = renderer.object( name );
         addRuleStatuses( renderer, *policy );
         addNamedCounters( renderer, *policy );
         addInstallations( renderer, *policy );
      }
   }
}

void addVrfs( RendererV2 & renderer, State const & state ) {
   static constexpr JsonKey vrfs( "vrfs" );
   static constexpr JsonKey l3Interfaces( "l3Interfaces" );
   {
      auto const list = renderer.list( vrfs );
      for ( L3::VrfName const & vrf : state.allVrfConfig->vrf() ) {
         renderer._addJsonKeyValuePair( wendo::listElement, vrf.string() );
      }
   }
   auto const all = renderer.object( l3Interfaces );
   for ( auto const & [intf, l3] : state.l3IntfStatusDir->intfStatus() ) {
      if ( l3 ) {
         addNamed( renderer, intf.string(), l3->vrf().string() );
      } else {
         addNamed( renderer, intf.string(), nullptr );
      }
   }
}

void addStatus( RendererV2 & renderer, State const & state ) {
   static constexpr JsonKey status( "status" );
   static constexpr JsonKey byteCounters( "byteCounters" );
   static constexpr JsonKey perInterface( "perInterfaceCounting" );
   static constexpr JsonKey granularity( "ingressCounterGranularity" );
   auto const open = renderer.object( status );
   renderer._addJsonKeyValuePair( byteCounters, state.status->byteCountersSupported() );
   renderer._addJsonKeyValuePair( perInterface, state.status->perIntfCounting() );
   if ( state.policyParamStatus ) {
      renderer._addJsonKeyValuePair(
         granularity,
         TrafficPolicy::counterGranularities[state.policyParamStatus->ingressCounterGranularity()]
            .view() );
   }
   addVrfs( renderer, state );
   addPolicyStatuses( renderer, *state.status );
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
