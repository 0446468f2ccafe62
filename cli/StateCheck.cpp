#include "cli/StateCheck.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <netinet/in.h>

#include <algorithm>
#include <set>
#include <utility>

namespace tpcli {

namespace {

std::string policyPlace( Vorn::String const & name ) {
   return "policy " + std::string( name.view() );
}

std::string rulePlace( Vorn::String const & policy, Vorn::String const & rule ) {
   return policyPlace( policy ) + ", rule " + std::string( rule.view() );
}

std::string counterPlace( Vorn::String const & policy, Vorn::String const & counter ) {
   return policyPlace( policy ) + ", counter " + std::string( counter.view() );
}

std::string familyName( PolicyMap::ClassMapMatchOption family ) {
   return std::string( PolicyMap::matchOptionName( family ).view() );
}

// The named counter that a rule counts into; empty when it counts for itself or not at all.
Vorn::String namedCounter( PolicyMap::PolicyMapSubConfig const & config,
                           Vorn::String const & rule ) {
   auto const * action = config.classAction( rule );
   auto const * count = action ? PolicyMap::actionAs< PolicyMap::CountAction >(
                           ( *action )->policyAction( PolicyMap::ActionType::count ) )
                               : nullptr;
   return count ? count->counterName() : Vorn::String();
}

// Two single values, the lower one first: perhaps meant as a range.
template< typename Range >
bool looksLikeRange( Vorn::HashSet< Range > const & list ) {
   if ( list.size() != 2 ) {
      return false;
   }
   auto at = list.begin();
   Range const low = *at;
   Range const high = *++at;
   return low.low == low.high && high.low == high.high && low.low < high.low;
}

} // namespace

StateCheck::StateCheck( State const & state )
   : state_( state ) {
   checkPolicies();
   checkBindings();
   checkMembership();
}

void StateCheck::find( std::string place, std::string message ) {
   findings_.push_back( { std::move( place ), std::move( message ) } );
}

void StateCheck::checkPolicies() {
   for ( auto const & [name, policy] : state_.config->policyMapConfig() ) {
      auto const * status = state_.status->policyMapStatus( name );
      PolicyMap::PolicyMapSubConfig const * config = policy ? policy->currCfg().get() : nullptr;
      if ( !status && config && !config->classSequence().empty() ) {
         find( policyPlace( name ), "has no status, so its rules are shown nowhere" );
      }
      if ( config ) {
         checkRules( name, *config, status ? status->get() : nullptr );
      }
   }
   for ( auto const & [name, status] : state_.status->policyMapStatus() ) {
      auto const * policy = state_.config->policyMapConfig( name );
      if ( !policy ) {
         find( policyPlace( name ), "has a status, but no configuration" );
      } else if ( !( *policy )->currCfg() && !status->cmap().empty() ) {
         find( policyPlace( name ), "has a status of rules, but none are committed" );
      }
   }
}

void StateCheck::checkRules( Vorn::String const & policy,
                             PolicyMap::PolicyMapSubConfig const & config,
                             PolicyMap::PolicyMapStatus const * status ) {
   for ( auto const & [sequence, rule] : config.classSequence() ) {
      wendo::interrupt::check();
      auto const * ruleStatus = status ? status->cmap( rule ) : nullptr;
      if ( status && !ruleStatus ) {
         find( rulePlace( policy, rule ), "has no status, so it is shown nowhere" );
      }
      checkRule( policy, rule, config, ruleStatus ? ruleStatus->get() : nullptr );
   }
   if ( !status ) {
      return;
   }
   for ( auto const & [rule, ruleStatus] : status->cmap() ) {
      if ( !config.rawClassMap( rule ) ) {
         find( rulePlace( policy, rule ), "has a status, but the policy has no such rule" );
      }
   }
   checkCounters( policy, config, *status );
}

void StateCheck::checkRule( Vorn::String const & policy, Vorn::String const & rule,
                            PolicyMap::PolicyMapSubConfig const & config,
                            PolicyMap::ClassMapStatus const * status ) {
   auto const * match = config.rawClassMap( rule );
   if ( status && status->match().empty() ) {
      find( rulePlace( policy, rule ), "has a status without a family, so it is shown nowhere" );
   } else if ( status ) {
      for ( PolicyMap::ClassMapMatchOption const family : status->match() ) {
         if ( !match || !( *match )->match( family ) ) {
            find( rulePlace( policy, rule ),
                  "is programmed for " + familyName( family ) + ", for which it has no match" );
         }
      }
   }
   Vorn::String const counter = namedCounter( config, rule );
   if ( !counter.empty() && !config.namedCounter( counter ) ) {
      find( rulePlace( policy, rule ), "counts into " + std::string( counter.view() )
                                          + ", which the policy does not declare" );
   }
   if ( !match ) {
      return;
   }
   checkMatch( rulePlace( policy, rule ), **match );
   for ( auto const & [family, condition] : ( *match )->match() ) {
      if ( status && !status->match().empty() && !status->match().contains( family ) ) {
         find( rulePlace( policy, rule ),
               "has a match for " + familyName( family ) + ", for which it is not programmed" );
      }
   }
}

void StateCheck::checkCounters( Vorn::String const & policy,
                                PolicyMap::PolicyMapSubConfig const & config,
                                PolicyMap::PolicyMapStatus const & status ) {
   std::set< Vorn::String > used;
   for ( auto const & [sequence, rule] : config.classSequence() ) {
      Vorn::String const counter = namedCounter( config, rule );
      if ( !counter.empty() ) {
         used.insert( counter );
      }
   }
   for ( Vorn::String const & counter : used ) {
      if ( config.namedCounter( counter ) && !status.counterStatus( counter ) ) {
         find( counterPlace( policy, counter ), "is counted into, but has no status" );
      }
   }
   for ( auto const & [counter, counterStatus] : status.counterStatus() ) {
      if ( !config.namedCounter( counter ) ) {
         find( counterPlace( policy, counter ),
               "has a status, but the policy does not declare it" );
      } else if ( !used.contains( counter ) ) {
         find( counterPlace( policy, counter ), "has counts, but no rule counts into it" );
      }
   }
}

void StateCheck::checkMatch( std::string const & place,
                             PolicyMap::ClassMapSubConfig const & match ) {
   auto const look = [&]( auto const & list, char const * what ) {
      if ( looksLikeRange( list ) ) {
         auto at = list.begin();
         unsigned const low = at->low;
         unsigned const high = ( ++at )->low;
         hints_.push_back( { place, std::string( what ) + ' ' + std::to_string( low ) + " and "
                                       + std::to_string( high ) + " look like a range" } );
      }
   };
   for ( auto const & [family, condition] : match.match() ) {
      auto const & filter = condition->structuredFilter();
      if ( !filter ) {
         continue;
      }
      checkShown( place, *filter );
      look( filter->length(), "lengths" );
      look( filter->dscp(), "DSCP values" );
      look( filter->ttl(), "TTLs" );
      for ( auto const & [range, protocol] : filter->protocols() ) {
         look( protocol->sport(), "source ports" );
         look( protocol->dport(), "destination ports" );
      }
   }
}

// Conditions that records may have, and no show prints.
void StateCheck::checkShown( std::string const & place,
                             Classification::StructuredFilter const & filter ) {
   using Classification::FragmentType;
   if ( auto const & fragment = filter.fragment() ) {
      bool const isShown =
         fragment->fragmentType() == FragmentType::all
         || ( fragment->fragmentType() == FragmentType::offset && !fragment->offset().empty() );
      if ( !isShown ) {
         find( place, "matches fragments in a way that is shown nowhere" );
      }
   }
   for ( auto const & [range, protocol] : filter.protocols() ) {
      bool const isTcp = range.low == IPPROTO_TCP && range.high == IPPROTO_TCP;
      if ( protocol->tcpFlags() != Classification::TcpFlagAndMask() && !isTcp ) {
         find( place, "matches TCP flags of another protocol, which is shown nowhere" );
      }
   }
}

void StateCheck::checkBindings() {
   auto const check = [&]( std::string const & place, Vorn::String const & policy ) {
      if ( !state_.config->policyMapConfig( policy ) ) {
         find( place, policyPlace( policy ) + " is configured here, but not defined" );
      }
   };
   auto const & vrfs = state_.allVrfConfig->vrf();
   state_.forEachVrfBinding( [&]( L3::VrfName const & vrf, Vorn::String const & policy ) {
      std::string const place = "VRF " + std::string( vrf.string().view() );
      check( place, policy );
      if ( !vrfs.contains( vrf ) && vrf.string() != "all" ) {
         find( place, "has " + policyPlace( policy ) + ", but does not exist" );
      }
   } );
   state_.forEachIntfBinding( [&]( Pelx::IntfId const & intf, Vorn::String const & policy ) {
      std::string const place = "interface " + std::string( intf.string().view() );
      check( place, policy );
      auto const * status = state_.status->policyMapStatus( policy );
      if ( !state_.l3IntfStatusDir->intfStatus( intf )
           && !( status && ( *status )->intfStatus( intf ) ) ) {
         find( place, "has " + policyPlace( policy ) + ", but no status anywhere" );
      }
   } );
}

// The VRFs of interfaces, and interfaces that count for no VRF.
void StateCheck::checkMembership() {
   for ( auto const & [intf, status] : state_.l3IntfStatusDir->intfStatus() ) {
      if ( status && !state_.allVrfConfig->vrf( status->vrf() ) ) {
         find( "interface " + std::string( intf.string().view() ),
               "is in VRF " + std::string( status->vrf().string().view() )
                  + ", which does not exist" );
      }
   }
   std::set< Vorn::String > onCpu;
   state_.forEachVrfBinding(
      [&]( L3::VrfName const &, Vorn::String const & policy ) { onCpu.insert( policy ); } );
   for ( Vorn::String const & name : onCpu ) {
      auto const * policy = state_.status->policyMapStatus( name );
      if ( !policy ) {
         continue;
      }
      for ( auto const & [intf, installed] : ( *policy )->intfStatus() ) {
         auto const * member = state_.l3IntfStatusDir->intfStatus( intf );
         // Where it is bound to the interface as well, that is what was installed.
         if ( ( !member || !*member ) && !state_.isBound( intf, name ) ) {
            find( policyPlace( name ) + ", interface " + std::string( intf.string().view() ),
                  "is in no VRF, so the show of the CPU leaves its installation out" );
         }
      }
   }
}

} // namespace tpcli
