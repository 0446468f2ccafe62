#include "cli/StateNames.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"

namespace tpcli {

namespace {

void visitPolicies( State const & state, NameVisitor const & visit ) {
   for ( auto const & [name, config] : state.config->policyMapConfig() ) {
      visit( name.view() );
   }
   for ( auto const & [name, status] : state.status->policyMapStatus() ) {
      visit( name.view() );
   }
   auto const visitBound = [&]( auto const &, Vorn::String const & name ) { visit( name.view() ); };
   state.forEachVrfBinding( visitBound );
   state.forEachIntfBinding( visitBound );
}

void visitRules( State const & state, std::string_view policy, NameVisitor const & visit ) {
   for ( auto const & [name, config] : state.config->policyMapConfig() ) {
      wendo::interrupt::check();
      if ( ( policy.empty() || name == policy ) && config->currCfg() ) {
         for ( auto const & [sequence, rule] : config->currCfg()->classSequence() ) {
            visit( rule.view() );
         }
      }
   }
}

void visitCounters( State const & state, NameVisitor const & visit ) {
   for ( auto const & [policy, config] : state.config->policyMapConfig() ) {
      if ( config->currCfg() ) {
         for ( auto const & name : config->currCfg()->namedCounter() ) {
            visit( name.view() );
         }
      }
   }
}

void visitInterfaces( State const & state, NameVisitor const & visit ) {
   for ( auto const & [intf, policy] : state.intfConfig->intf() ) {
      visit( intf.string().view() );
   }
   for ( auto const & [intf, status] : state.l3IntfStatusDir->intfStatus() ) {
      visit( intf.string().view() );
   }
   for ( auto const & [policy, status] : state.status->policyMapStatus() ) {
      for ( auto const & [intf, installed] : status->intfStatus() ) {
         visit( intf.string().view() );
      }
   }
}

void visitVrfs( State const & state, NameVisitor const & visit ) {
   for ( auto const & vrf : state.allVrfConfig->vrf() ) {
      visit( vrf.string().view() );
   }
   for ( auto const & [vrf, policy] : state.vrfConfig->trafficPolicies() ) {
      visit( vrf.string().view() );
   }
   for ( auto const & [intf, status] : state.l3IntfStatusDir->intfStatus() ) {
      if ( status ) {
         visit( status->vrf().string().view() );
      }
   }
}

} // namespace

void forEachName( State const & state, Argument kind, std::string_view policy,
                  NameVisitor const & visit ) {
   switch ( kind ) {
   case Argument::policy:
      visitPolicies( state, visit );
      break;
   case Argument::rule:
      visitRules( state, policy, visit );
      break;
   case Argument::interface:
      visitInterfaces( state, visit );
      break;
   case Argument::vrf:
      visitVrfs( state, visit );
      break;
   // A text may be any name that lines have.
   case Argument::text:
      visitPolicies( state, visit );
      visitRules( state, policy, visit );
      visitCounters( state, visit );
      visitInterfaces( state, visit );
      visitVrfs( state, visit );
      break;
   default:
      break;
   }
}

bool hasName( State const & state, Argument kind, std::string_view name ) {
   bool found = false;
   forEachName( state, kind, "", [&]( std::string_view one ) { found |= one == name; } );
   return found;
}

} // namespace tpcli
