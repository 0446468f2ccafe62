#include "cli/RecordFilter.h"

#include "TrafficPolicy/counters/CounterLookup.h"
#include "TrafficPolicy/platform/vorn/DescribeAttributes.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <algorithm>
#include <optional>
#include <set>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatchOption;
using PolicyMap::InstalledStatus;
using PolicyMap::PolicyMapStatus;
using PolicyMap::PolicyMapSubConfig;

// Each of these is copied here, member by member, without what is filtered out.
static_assert( Vorn::declaredLines< TrafficPolicy::TrafficPolicyConfig >.size() == 1 );
static_assert( Vorn::declaredLines< PolicyMap::PolicyMapTypeStatus >.size() == 2 );
static_assert( Vorn::declaredLines< TrafficPolicy::Status >.size() == 1 );
static_assert( Vorn::declaredLines< PolicyMap::PolicyMapConfig >.size() == 1 );
static_assert( Vorn::declaredLines< PolicyMapSubConfig >.size() == 4 );
static_assert( Vorn::declaredLines< PolicyMapStatus >.size() == 4 );

constexpr OptionSet ruleFilters( Option::rule, Option::nonzero, Option::unused );
constexpr OptionSet policyFilters( Option::interface, Option::vrf, Option::failed );

// The two families that the shows speak of.
constexpr ClassMapMatchOption families[] = { ClassMapMatchOption::ipv4, ClassMapMatchOption::ipv6 };

// Where a policy stands in one family on one binding of it: an interface, or a VRF's interfaces.
struct Outcome {
   bool any = false;
   bool allProgrammed = true;
   bool failed = false;

   void add( PolicyMap::IntfStatus const & status, ClassMapMatchOption family ) {
      InstalledStatus const * installed = status.installed( family );
      any = true;
      allProgrammed &= installed && installed->status == InstalledStatus::programmed;
      failed |= installed && installed->status == InstalledStatus::failed;
   }
   bool known() const { return failed || ( any && allProgrammed ); }
};

class Filter {
public:
   Filter( State const & state, Vorn::Ptr< TrafficPolicy::Counter const > const & store,
           Command const & command )
      : state_( state )
      , store_( store )
      , command_( command )
      , cpu_( command.row->verb == Verb::showCpu ) {}

   State apply() {
      State result = state_;
      result.config = Vorn::create< TrafficPolicy::TrafficPolicyConfig >();
      result.status = Vorn::create< TrafficPolicy::Status >();
      result.status->perIntfCountingIs( state_.status->perIntfCounting() );
      result.status->byteCountersSupportedIs( state_.status->byteCountersSupported() );
      for ( auto const & [name, config] : state_.config->policyMapConfig() ) {
         wendo::interrupt::check();
         PolicyMapSubConfig const * rules = config ? config->currCfg().get() : nullptr;
         if ( keeps( name, rules ) ) {
            keepPolicy( result, name, *config );
         }
      }
      // Those without a configuration have no rules to ask for.
      for ( auto const & [name, status] : state_.status->policyMapStatus() ) {
         if ( !state_.config->policyMapConfig( name ) && keeps( name, nullptr ) ) {
            result.status->policyMapStatusIs( name, status );
            kept_.insert( name );
         }
      }
      keepBindings( result );
      return result;
   }

private:
   bool keeps( Vorn::String const & name, PolicyMapSubConfig const * rules ) const {
      return ( !command_.has( Option::rule )
               || ( rules
                    && rules->rawClassMap().contains(
                       Vorn::String( command_.value( Option::rule ) ) ) ) )
             && ( !command_.has( Option::interface ) || standsOnInterface( name ) )
             && ( !command_.has( Option::vrf ) || standsInVrf( name ) )
             && ( !command_.has( Option::failed ) || hasFailed( name ) );
   }

   PolicyMapStatus const * statusOf( Vorn::String const & name ) const {
      auto const * status = state_.status->policyMapStatus( name );
      return status ? status->get() : nullptr;
   }

   // The VRF of a layer-3 interface, or null.
   L3::VrfName const * vrfOf( Pelx::IntfId const & intf ) const {
      auto const * status = state_.l3IntfStatusDir->intfStatus( intf );
      return status && *status ? &( *status )->vrf() : nullptr;
   }

   bool standsOnInterface( Vorn::String const & name ) const {
      Pelx::IntfId const wanted{ Vorn::String( command_.value( Option::interface ) ) };
      if ( !cpu_ && state_.isBound( wanted, name ) ) {
         return true;
      }
      PolicyMapStatus const * status = statusOf( name );
      auto const * installed = status ? status->intfStatus( wanted ) : nullptr;
      return installed && std::ranges::any_of( families, [&]( ClassMapMatchOption family ) {
                Outcome outcome;
                outcome.add( **installed, family );
                return outcome.known();
             } );
   }

   bool standsInVrf( Vorn::String const & name ) const {
      L3::VrfName const wanted{ Vorn::String( command_.value( Option::vrf ) ) };
      return configuredInVrf( name, wanted )
             || std::ranges::any_of( families, [&]( ClassMapMatchOption family ) {
                   return outcomeInVrf( name, wanted, family ).known();
                } );
   }

   bool configuredInVrf( Vorn::String const & name, L3::VrfName const & wanted ) const {
      if ( cpu_ ) {
         return state_.isBound( wanted, name );
      }
      bool found = false;
      state_.forEachIntfBinding( [&]( Pelx::IntfId const & intf, Vorn::String const & policy ) {
         L3::VrfName const * vrf = policy == name ? vrfOf( intf ) : nullptr;
         found |= vrf && *vrf == wanted;
      } );
      return found;
   }

   // On the interface side a VRF has what one of its interfaces has.
   Outcome outcomeInVrf( Vorn::String const & name, L3::VrfName const & wanted,
                         ClassMapMatchOption family ) const {
      Outcome outcome;
      PolicyMapStatus const * policy = statusOf( name );
      if ( !policy ) {
         return outcome;
      }
      for ( auto const & [intf, status] : policy->intfStatus() ) {
         L3::VrfName const * vrf = vrfOf( intf );
         if ( !vrf || !( *vrf == wanted ) ) {
            continue;
         }
         if ( !cpu_ && outcome.known() ) {
            return outcome;
         }
         outcome = cpu_ ? outcome : Outcome();
         outcome.add( *status, family );
      }
      return outcome;
   }

   bool hasFailed( Vorn::String const & name ) const {
      PolicyMapStatus const * policy = statusOf( name );
      return policy && std::ranges::any_of( policy->intfStatus(), [&]( auto const & entry ) {
                auto const & [intf, status] = entry;
                return ( !cpu_ || vrfOf( intf ) )
                       && std::ranges::any_of( families,
                                               [&status = status]( ClassMapMatchOption family ) {
                                                  Outcome outcome;
                                                  outcome.add( *status, family );
                                                  return outcome.failed;
                                               } );
             } );
   }

   void keepPolicy( State & result, Vorn::String const & name,
                    PolicyMap::PolicyMapConfig const & config ) {
      kept_.insert( name );
      auto const * status = state_.status->policyMapStatus( name );
      if ( !command_.options.meets( ruleFilters ) || !config.currCfg() || !status ) {
         result.config->policyMapConfigIs( name, *state_.config->policyMapConfig( name ) );
         if ( status ) {
            result.status->policyMapStatusIs( name, *status );
         }
         return;
      }
      auto const rules = Vorn::create< PolicyMapSubConfig >( name );
      auto const statuses = Vorn::create< PolicyMapStatus >( name );
      keepRules( *config.currCfg(), **status, *rules, *statuses );
      auto const policy = Vorn::create< PolicyMap::PolicyMapConfig >();
      policy->currCfgIs( rules );
      result.config->policyMapConfigIs( name, policy );
      result.status->policyMapStatusIs( name, statuses );
   }

   void keepRules( PolicyMapSubConfig const & config, PolicyMapStatus const & status,
                   PolicyMapSubConfig & rules, PolicyMapStatus & statuses ) const {
      for ( auto const & [sequence, rule] : config.classSequence() ) {
         wendo::interrupt::check();
         auto const * classStatus = status.cmap( rule );
         auto const * action = config.classAction( rule );
         if ( !classStatus
              || !keepsRule( status, **classStatus, action ? action->get() : nullptr ) ) {
            continue;
         }
         rules.classSequenceIs( sequence, rule );
         if ( auto const * match = config.rawClassMap( rule ) ) {
            rules.rawClassMapIs( rule, *match );
         }
         if ( action ) {
            rules.classActionIs( rule, *action );
         }
         statuses.cmapIs( rule, *classStatus );
      }
      for ( auto const & counter : config.namedCounter() ) {
         rules.namedCounterIs( counter );
      }
      for ( auto const & [counter, counterStatus] : status.counterStatus() ) {
         statuses.counterStatusIs( counter, counterStatus );
      }
      for ( auto const & [intf, installed] : status.intfStatus() ) {
         statuses.intfStatusIs( intf, installed );
      }
   }

   bool keepsRule( PolicyMapStatus const & policy, PolicyMap::ClassMapStatus const & rule,
                   PolicyMap::ClassAction const * action ) const {
      if ( command_.has( Option::rule ) && !( rule.name() == command_.value( Option::rule ) ) ) {
         return false;
      }
      if ( !command_.has( Option::nonzero ) && !command_.has( Option::unused ) ) {
         return true;
      }
      std::optional< uint64_t > const count = countOf( policy, rule, action );
      return count && ( *count != 0 ) == command_.has( Option::nonzero );
   }

   // What is shown as the rule's count, if one is.
   std::optional< uint64_t > countOf( PolicyMapStatus const & policy,
                                      PolicyMap::ClassMapStatus const & rule,
                                      PolicyMap::ClassAction const * action ) const {
      auto const * count = action ? PolicyMap::actionAs< PolicyMap::CountAction >(
                              action->policyAction( PolicyMap::ActionType::count ) )
                                  : nullptr;
      if ( !count ) {
         return std::nullopt;
      }
      if ( count->counterName().empty() ) {
         return TrafficPolicyCli::RuleSnapshots( store_.get(), policy.name() ).packets( rule );
      }
      auto const * counter = policy.counterStatus( count->counterName() );
      if ( !counter ) {
         return std::nullopt;
      }
      return TrafficPolicyCli::getNamedPacketCount( store_, *counter, policy.name() );
   }

   void keepBindings( State & result ) const {
      result.vrfConfig = Vorn::create< PolicyMap::VrfConfig >();
      result.furtherVrfPolicies = Vorn::create< FurtherPolicies< L3::VrfName > >();
      result.intfConfig = Vorn::create< PolicyMap::IntfConfig >();
      result.furtherIntfPolicies = Vorn::create< FurtherPolicies< Pelx::IntfId > >();
      auto const keep = [&]( auto const & binding, Vorn::String const & name ) {
         if ( keepsBound( name ) ) {
            result.bind( binding, name );
         }
      };
      state_.forEachVrfBinding( keep );
      state_.forEachIntfBinding( keep );
   }

   // One that is bound alone has neither rules nor a status.
   bool keepsBound( Vorn::String const & name ) const {
      bool const boundAlone =
         !state_.config->policyMapConfig( name ) && !state_.status->policyMapStatus( name );
      return boundAlone ? keeps( name, nullptr ) : kept_.contains( name );
   }

   State const & state_;
   Vorn::Ptr< TrafficPolicy::Counter const > const & store_;
   Command const & command_;
   bool cpu_;
   std::set< Vorn::String > kept_;
};

} // namespace

State filtered( State const & state, Vorn::Ptr< TrafficPolicy::Counter const > const & store,
                Command const & command ) {
   if ( !command.options.meets( ruleFilters ) && !command.options.meets( policyFilters ) ) {
      return state;
   }
   return Filter( state, store, command ).apply();
}

} // namespace tpcli
