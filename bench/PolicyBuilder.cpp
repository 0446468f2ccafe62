#include "bench/PolicyBuilder.h"

#include "sources/SharedActions.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace Bench {

namespace {

using PolicyMap::ActionType;
using PolicyMap::ClassMapMatchOption;
using Vorn::create;
using Vorn::String;

constexpr unsigned interfaces = 48;

struct Names {
   String policy{ policyName };
   String permitted{ "permitted" };
   String denied{ "denied" };
   L3::VrfName defaultVrf{ "default" };
   L3::VrfName mgmtVrf{ "mgmt" };
   L3::VrfName allVrfs{ "all" };
   std::vector< Pelx::IntfId > ports;

   Names() {
      for ( unsigned i = 1; i <= interfaces; ++i ) {
         ports.emplace_back( String( "Ethernet" + std::to_string( i ) ) );
      }
   }
};

template< typename Range >
Range range( uint32_t low, uint32_t high ) {
   return Range{ { low, high } };
}

Pelx::IpGenPrefix prefix( Prefix const & plain ) {
   return Pelx::IpGenPrefix( Pelx::Ip4Prefix{ plain.address, plain.length } );
}

Vorn::Ptr< Classification::ProtoField const > makeProtocol( Filter const & filter ) {
   auto const field = create< Classification::ProtoField >();
   if ( !filter.sourcePorts.any() ) {
      field->sportIs(
         range< Classification::PortRange >( filter.sourcePorts.low, filter.sourcePorts.high ) );
   }
   if ( !filter.destinationPorts.any() ) {
      field->dportIs( range< Classification::PortRange >( filter.destinationPorts.low,
                                                          filter.destinationPorts.high ) );
   }
   field->tcpFlagsIs( { filter.tcpFlags, filter.tcpFlags } );
   return field;
}

Vorn::Ptr< Classification::StructuredFilter const > makeFilter( PlainRule const & rule ) {
   auto const filter = create< Classification::StructuredFilter >();
   if ( rule.filter.source.length != 0 ) {
      filter->sourcesIs( prefix( rule.filter.source ) );
   }
   if ( rule.filter.destination.length != 0 ) {
      filter->destinationsIs( prefix( rule.filter.destination ) );
   }
   if ( !rule.filter.anyProtocol ) {
      filter->protocolsIs(
         range< Classification::ProtocolRange >( rule.filter.protocol, rule.filter.protocol ),
         makeProtocol( rule.filter ) );
   }
   if ( rule.dscp ) {
      filter->dscpIs( range< Classification::DscpRange >( 46, 46 ) );
      filter->dscpIs( range< Classification::DscpRange >( 8, 14 ) );
   }
   return filter;
}

Vorn::Ptr< PolicyMap::ClassMapSubConfig const > makeClass( PlainRule const & rule ) {
   auto const classConfig = create< PolicyMap::ClassMapSubConfig >();
   auto const match = create< PolicyMap::ClassMapMatch >( ClassMapMatchOption::ipv4 );
   match->structuredFilterIs( makeFilter( rule ) );
   classConfig->matchIs( ClassMapMatchOption::ipv4, match );
   return classConfig;
}

// Rules share what has no value of its own, as where the program reads them.
Vorn::Ptr< PolicyMap::ClassAction const > makeActions( PlainRule const & rule, Names const & names,
                                                       tpcli::SharedActions & shared ) {
   auto const actions = create< PolicyMap::ClassAction >();
   auto const plain = [&]( ActionType type ) {
      actions->policyActionIs( type, shared.plain( type ) );
   };
   auto const count = [&]( String const & counter ) {
      actions->policyActionIs( ActionType::count, shared.count( counter.view() ) );
   };
   switch ( rule.actions ) {
   case Actions::dropCount:
      actions->policyActionReserve( 2 );
      plain( ActionType::drop );
      count( String() );
      break;
   case Actions::countPermitted:
      count( names.permitted );
      break;
   case Actions::dropLogDenied:
      actions->policyActionReserve( 3 );
      plain( ActionType::drop );
      count( names.denied );
      plain( ActionType::log );
      break;
   case Actions::policeCount:
      actions->policyActionReserve( 2 );
      actions->policyActionIs(
         ActionType::police,
         create< PolicyMap::PoliceAction >( rule.policeRate, PolicyMap::RateUnit::kbps ) );
      count( String() );
      break;
   case Actions::setTrafficClass:
      actions->policyActionIs( ActionType::setTc,
                               create< TrafficPolicy::SetTcAction >( rule.trafficClass ) );
      break;
   }
   return actions;
}

// The order in which records of rules are made, or listed: the rules' own, or any.
std::vector< uint32_t > orderOf( size_t rules, bool shuffled ) {
   std::vector< uint32_t > order( rules );
   std::iota( order.begin(), order.end(), 0u );
   if ( shuffled ) {
      std::shuffle( order.begin(), order.end(), std::mt19937( 1 ) );
   }
   return order;
}

Vorn::Ptr< PolicyMap::PolicyMapSubConfig const > makePolicy( std::vector< PlainRule > const & rules,
                                                             Names const & names, bool scattered ) {
   struct Records {
      String name;
      Vorn::Ptr< PolicyMap::ClassMapSubConfig const > config;
      Vorn::Ptr< PolicyMap::ClassAction const > actions;
   };
   auto const policy = create< PolicyMap::PolicyMapSubConfig >( names.policy );
   policy->namedCounterIs( names.denied );
   policy->namedCounterIs( names.permitted );
   policy->classesReserve( rules.size() );
   std::vector< Records > records( rules.size() );
   tpcli::SharedActions shared;
   for ( uint32_t const at : orderOf( rules.size(), scattered ) ) {
      PlainRule const & rule = rules[at];
      records[at] = { String( rule.name() ), makeClass( rule ),
                      makeActions( rule, names, shared ) };
   }
   uint32_t sequence = 0;
   for ( Records const & rule : records ) {
      policy->rawClassMapIs( rule.name, rule.config );
      policy->classActionIs( rule.name, rule.actions );
      policy->classSequenceIs( sequence += 10, rule.name );
   }
   return policy;
}

// The status of each rule, under the names of the configuration or under equal ones.
void addClassStatuses( PolicyMap::PolicyMapStatus & status, std::vector< PlainRule > const & rules,
                       PolicyMap::PolicyMapSubConfig const & policy,
                       BuildOptions const & options ) {
   std::vector< Vorn::Ptr< PolicyMap::ClassMapStatus const > > records( rules.size() );
   for ( uint32_t const at : orderOf( rules.size(), options.scatteredRecords ) ) {
      String const & configName = policy.classSequence().begin()[at].value;
      String const name = options.sharedNames ? configName : String( configName.view() );
      auto const classStatus = create< PolicyMap::ClassMapStatus >( name );
      classStatus->matchIs( ClassMapMatchOption::ipv4 );
      classStatus->uniqueIdIs( Umbo::UniqueId( at + 1 ) );
      classStatus->packetCountIs( rules[at].packets );
      records[at] = classStatus;
   }
   status.cmapReserve( rules.size() );
   for ( uint32_t const at : orderOf( rules.size(), options.shuffledStatus ) ) {
      status.cmapIs( records[at]->name(), records[at] );
   }
}

void addNamedCounter( PolicyMap::PolicyMapStatus & status, String const & name,
                      Names const & names ) {
   auto const counter = create< PolicyMap::PacketDataStatus >( name );
   counter->uniqueIdIs( Umbo::UniqueId( 1 ) );
   counter->totalIs( { uint64_t{ 1000 } * interfaces, uint64_t{ 84'000 } * interfaces } );
   uint64_t id = 2;
   for ( Pelx::IntfId const & port : names.ports ) {
      auto const data = create< PolicyMap::IntfCountData >( port, Umbo::UniqueId( id++ ) );
      data->countDataIs( { 1000, 84'000 } );
      counter->intfCountDataIs( port, data );
   }
   status.counterStatusIs( name, counter );
}

// IPv4 is programmed everywhere; IPv6 fails on every 24th interface.
void addInterfaces( PolicyMap::PolicyMapStatus & status, Names const & names ) {
   using PolicyMap::InstalledStatus;
   unsigned i = 0;
   for ( Pelx::IntfId const & port : names.ports ) {
      auto const intf = create< PolicyMap::IntfStatus >();
      intf->installedIs( ClassMapMatchOption::ipv4, { InstalledStatus::programmed, {} } );
      intf->installedIs( ClassMapMatchOption::ipv6,
                         i++ % 24 == 0 ? InstalledStatus{ InstalledStatus::failed, "TCAM full" }
                                       : InstalledStatus{ InstalledStatus::programmed, {} } );
      status.intfStatusIs( port, intf );
   }
}

void addBindings( Inputs & inputs, Names const & names ) {
   auto const vrfConfig = create< PolicyMap::VrfConfig >();
   auto const allVrfs = create< Ip::AllVrfConfig >();
   for ( L3::VrfName const & vrf : { names.defaultVrf, names.mgmtVrf } ) {
      vrfConfig->trafficPoliciesIs( vrf, names.policy );
      allVrfs->vrfIs( vrf );
   }
   vrfConfig->trafficPoliciesIs( names.allVrfs, names.policy );
   auto const intfConfig = create< PolicyMap::IntfConfig >();
   auto const l3Status = create< L3::Intf::StatusDir >();
   unsigned i = 0;
   for ( Pelx::IntfId const & port : names.ports ) {
      intfConfig->intfIs( port, names.policy );
      l3Status->intfStatusIs(
         port, create< L3::Intf::Status >( i++ % 2 == 0 ? names.defaultVrf : names.mgmtVrf ) );
   }
   auto const parameters = create< TrafficPolicy::TrafficPolicyIntfParamStatus >();
   parameters->ingressCounterGranularityIs( TrafficPolicy::CounterGranularity::perInterface );
   inputs.vrfConfig = vrfConfig;
   inputs.allVrfConfig = allVrfs;
   inputs.intfConfig = intfConfig;
   inputs.l3Status = l3Status;
   inputs.intfParamStatus = parameters;
}

} // namespace

Inputs buildPolicy( std::vector< PlainRule > const & rules, BuildOptions const & options ) {
   Names const names;
   Inputs inputs;
   addBindings( inputs, names );

   auto const policy = makePolicy( rules, names, options.scatteredRecords );
   auto const policyConfig = create< PolicyMap::PolicyMapConfig >();
   policyConfig->currCfgIs( policy );
   auto const config = create< TrafficPolicy::TrafficPolicyConfig >();
   config->policyMapConfigIs( names.policy, policyConfig );
   inputs.config = config;

   auto const policyStatus = create< PolicyMap::PolicyMapStatus >( names.policy );
   addClassStatuses( *policyStatus, rules, *policy, options );
   addNamedCounter( *policyStatus, names.denied, names );
   addNamedCounter( *policyStatus, names.permitted, names );
   addInterfaces( *policyStatus, names );
   auto const status = create< TrafficPolicy::Status >();
   status->policyMapStatusIs( names.policy, policyStatus );
   status->perIntfCountingIs( true );
   status->byteCountersSupportedIs( true );
   inputs.status = status;

   inputs.counter = create< TrafficPolicy::Counter >();
   return inputs;
}

} // namespace Bench
