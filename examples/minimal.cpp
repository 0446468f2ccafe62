// A program on the library: fills records for two policies of two rules each, then shows one of
// them as text and as JSON.

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"

#include <unistd.h>

#include <exception>
#include <iostream>

namespace {

using PolicyMap::ActionType;
using PolicyMap::ClassMapMatchOption;
using Vorn::create;
using Vorn::String;

// What a state database holds, as records. Those in collections are filled before they are
// inserted.
struct Switch {
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig > config =
      create< TrafficPolicy::TrafficPolicyConfig >();
   Vorn::Ptr< TrafficPolicy::Status > status = create< TrafficPolicy::Status >();
   Vorn::Ptr< PolicyMap::IntfConfig > interfaces = create< PolicyMap::IntfConfig >();
};

// A rule: what it matches and does, and what the hardware counted.
void addRule( PolicyMap::PolicyMapSubConfig & policy, PolicyMap::PolicyMapStatus & status,
              String const & name, uint32_t protocol, ActionType type, uint64_t packets ) {
   auto filter = create< Classification::StructuredFilter >();
   filter->protocolsIs( Classification::ProtocolRange{ { protocol, protocol } },
                        create< Classification::ProtoField >() );
   auto match = create< PolicyMap::ClassMapMatch >( ClassMapMatchOption::ipv4 );
   match->structuredFilterIs( filter );
   auto rule = create< PolicyMap::ClassMapSubConfig >();
   rule->matchIs( ClassMapMatchOption::ipv4, match );

   auto actions = create< PolicyMap::ClassAction >();
   actions->policyActionIs( type, create< PolicyMap::Action >( type ) );
   actions->policyActionIs( ActionType::count, create< PolicyMap::CountAction >( "" ) );

   auto installed = create< PolicyMap::ClassMapStatus >( name );
   installed->matchIs( ClassMapMatchOption::ipv4 );
   installed->packetCountIs( packets );

   policy.classSequenceIs( static_cast< uint32_t >( policy.classSequence().size() + 1 ) * 10,
                           name );
   policy.rawClassMapIs( name, rule );
   policy.classActionIs( name, actions );
   status.cmapIs( name, installed );
}

// A policy of two rules, configured on one interface and installed there.
void addPolicy( Switch & device, String const & name, String const & interface ) {
   auto rules = create< PolicyMap::PolicyMapSubConfig >( name );
   auto status = create< PolicyMap::PolicyMapStatus >( name );
   addRule( *rules, *status, "ping", 1, ActionType::log, 12 );
   addRule( *rules, *status, "tunnels", 47, ActionType::drop, 3 );

   auto policy = create< PolicyMap::PolicyMapConfig >();
   policy->currCfgIs( rules );
   device.config->policyMapConfigIs( name, policy );

   Pelx::IntfId const id( interface );
   auto installed = create< PolicyMap::IntfStatus >();
   installed->installedIs( ClassMapMatchOption::ipv4,
                           { PolicyMap::InstalledStatus::programmed, "" } );
   status->intfStatusIs( id, installed );
   device.status->policyMapStatusIs( name, status );
   device.interfaces->intfIs( id, name );
}

void show( Switch const & device, String const & policyName ) {
   unsigned const text = 1;
   unsigned const json = 2;
   for ( unsigned const format : { text, json } ) {
      // Null: no counter store, so that counts are the hardware's, and no parameter status.
      auto const command = TrafficPolicyCli::showTrafficPolicyInterfaceFactory(
         device.config, device.status, nullptr, policyName, false, false, false, false, false,
         device.interfaces, nullptr );
      command->render( STDOUT_FILENO, format, 1 );
   }
}

} // namespace

int main() {
   try {
      Switch device;
      addPolicy( device, "edge-in", "Ethernet1" );
      addPolicy( device, "guests", "Ethernet2" );
      show( device, "edge-in" );
   } catch ( std::exception const & error ) {
      std::cerr << error.what() << '\n'; // such as a full disk or a closed pipe
      return 1;
   }
   return 0;
}
