// The configuration: policies with their rules, and where they are applied.

#include "TrafficPolicy/platform/vorn/Prefetch.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/SharedActions.h"
#include "sources/SharedNames.h"
#include "sources/file/StateReader.h"
#include "sources/file/ValueReaders.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatch;
using PolicyMap::ClassMapMatchOption;
using PolicyMap::ClassMapSubConfig;
using PolicyMap::PolicyMapSubConfig;

// A rule as the file has it. Rules are entered into the policy when their number is known.
struct Rule {
   Vorn::String name;
   std::optional< uint32_t > sequence;
   Vorn::Ptr< ClassMapSubConfig const > match;
   Vorn::Ptr< PolicyMap::ClassAction const > actions;
   JsonText::Position position; // in the file
};

Vorn::Ptr< ClassMapSubConfig const > readMatch( JsonValue & value ) {
   auto const config = Vorn::create< ClassMapSubConfig >();
   value.map( [&]( std::string_view name, JsonValue v ) {
      ClassMapMatchOption const family = familyOf( name, v );
      auto const match = Vorn::create< ClassMapMatch >( family );
      if ( !v.null() ) {
         match->structuredFilterIs( readFilter( v, family ) );
      }
      if ( !config->matchIs( family, match ) ) {
         v.fail( "given twice" );
      }
   } );
   return config;
}

Rule readRule( JsonValue & value, SharedActions & shared ) {
   Rule rule;
   rule.position = value.position();
   auto const name = [&]( JsonValue & v ) { rule.name = v.name( "a rule name" ); };
   auto const number = [&]( JsonValue & v ) {
      rule.sequence = static_cast< uint32_t >( v.number( "a sequence number", ~uint32_t{ 0 } ) );
   };
   auto const match = [&]( JsonValue & v ) { rule.match = readMatch( v ); };
   auto const actions = [&]( JsonValue & v ) { rule.actions = readActions( v, shared ); };
   value.object( required( "name", name ), optional( "sequence", number ),
                 optional( "match", match ), optional( "actions", actions ) );
   return rule;
}

// Prefetches the name of a later rule, and the index slots that another one will be entered at.
void prefetchEntry( std::vector< Rule > const & rules, size_t rule,
                    PolicyMapSubConfig const & config ) {
   constexpr size_t far = 16; // rules
   constexpr size_t near = 8;
   if ( rule + far < rules.size() ) {
      Vorn::prefetch( rules[rule + far].name.data() );
      config.rawClassMap().prefetch( rules[rule + near].name );
      config.classAction().prefetch( rules[rule + near].name );
   }
}

// Visits the rules by ascending sequence number, those of equal numbers in the file's order.
template< typename Visit >
void forEachInSequence( std::vector< Rule > & rules, Visit const & visit ) {
   auto const before = []( Rule const & a, Rule const & b ) { return a.sequence < b.sequence; };
   if ( std::is_sorted( rules.begin(), rules.end(), before ) ) {
      std::for_each( rules.begin(), rules.end(), visit );
      return;
   }
   std::vector< Rule * > sorted;
   sorted.reserve( rules.size() );
   for ( Rule & rule : rules ) {
      sorted.push_back( &rule );
   }
   std::stable_sort( sorted.begin(), sorted.end(),
                     [&]( Rule const * a, Rule const * b ) { return before( *a, *b ); } );
   for ( Rule * rule : sorted ) {
      visit( *rule );
   }
}

// Moves the rules into the policy: names in the file's order, numbers sorted, with room reserved
// for all. Copies would count references in the records once more, when these are long out of the
// cache.
void enterRules( JsonValue const & list, std::vector< Rule > & rules,
                 PolicyMapSubConfig & config ) {
   auto const fail = [&]( Rule const & rule, std::string const & message ) {
      list.failElement( static_cast< size_t >( &rule - rules.data() ), rule.position, message );
   };
   config.classesReserve( rules.size() );
   for ( Rule & rule : rules ) {
      wendo::interrupt::check();
      prefetchEntry( rules, static_cast< size_t >( &rule - rules.data() ), config );
      // A rule without conditions gets an empty entry: it marks the name as taken, and the status
      // reader follows the names of these entries.
      if ( !rule.match ) {
         rule.match = Vorn::create< ClassMapSubConfig >();
      }
      if ( !config.rawClassMapIs( rule.name, std::move( rule.match ) ) ) {
         fail( rule, "the rule name " + quoted( rule.name.view() ) + " is given twice" );
      }
      if ( rule.actions ) {
         config.classActionIs( rule.name, std::move( rule.actions ) );
      }
   }
   auto const & sequence = config.classSequence();
   forEachInSequence( rules, [&]( Rule & rule ) {
      wendo::interrupt::check();
      if ( !sequence.empty() && ( sequence.end() - 1 )->key == rule.sequence ) {
         fail( rule, "the rules " + quoted( ( sequence.end() - 1 )->value.view() ) + " and "
                        + quoted( rule.name.view() ) + " have the same sequence number" );
      }
      config.classSequenceIs( *rule.sequence, std::move( rule.name ) );
   } );
}

void readRules( JsonValue & value, PolicyMapSubConfig & config ) {
   SharedActions shared;
   std::vector< Rule > rules;
   value.list( [&]( JsonValue v ) {
      wendo::interrupt::check();
      if ( rules.size() == Vorn::rulesMax ) {
         v.fail( "a policy has at most " + std::to_string( Vorn::rulesMax ) + " rules" );
      }
      rules.push_back( readRule( v, shared ) );
      if ( !rules.back().sequence ) {
         rules.back().sequence = static_cast< uint32_t >( rules.size() * 10 );
      }
   } );
   enterRules( value, rules, config );
}

Vorn::Ptr< PolicyMap::PolicyMapConfig const > readPolicy( Vorn::String const & name,
                                                          JsonValue & value ) {
   auto const policy = Vorn::create< PolicyMap::PolicyMapConfig >();
   if ( value.null() ) {
      return policy;
   }
   auto const config = Vorn::create< PolicyMapSubConfig >( name );
   auto const namedCounters = [&]( JsonValue & list ) {
      list.list( [&]( JsonValue v ) {
         Vorn::String const counter( v.name( "a counter name" ) );
         if ( !config->namedCounterIs( counter ) ) {
            v.fail( quoted( counter.view() ) + " stands in the list twice" );
         }
      } );
   };
   value.object( optional( "namedCounters", namedCounters ),
                 optional( "rules", [&]( JsonValue & v ) { readRules( v, *config ); } ) );
   policy->currCfgIs( config );
   return policy;
}

void readPolicies( JsonValue & value, TrafficPolicy::TrafficPolicyConfig & config ) {
   value.map( [&]( std::string_view text, JsonValue v ) {
      if ( text.empty() ) {
         v.fail( "empty, where a policy name is needed" );
      }
      Vorn::String const name( text );
      if ( config.policyMapConfig( name ) ) {
         v.fail( "given twice" );
      }
      config.policyMapConfigIs( name, readPolicy( name, v ) );
   } );
}

// One policy, or a list of them, each once.
template< typename Binding >
void readBinding( Binding const & binding, JsonValue & value, State & state, RecentNames & policies,
                  Vorn::String const * present ) {
   if ( present ) {
      value.fail( "given twice" );
   }
   auto const bind = [&]( JsonValue & v ) {
      Vorn::String const policy = policies.get( v.name( "a policy name" ) );
      if ( !state.bind( binding, policy ) ) {
         v.fail( quoted( policy.view() ) + " stands in the list twice" );
      }
   };
   if ( value.isList() ) {
      value.list( [&]( JsonValue v ) { bind( v ); } );
   } else {
      bind( value );
   }
}

} // namespace

void readConfig( JsonValue & value, State & state ) {
   RecentNames policies;
   auto const cpu = [&]( JsonValue & map ) {
      map.map( [&]( std::string_view vrf, JsonValue v ) {
         L3::VrfName const name = vrfOf( vrf, v );
         readBinding( name, v, state, policies, state.vrfConfig->trafficPolicies( name ) );
      } );
   };
   auto const interfaces = [&]( JsonValue & map ) {
      map.map( [&]( std::string_view intf, JsonValue v ) {
         Pelx::IntfId const name( intf );
         readBinding( name, v, state, policies, state.intfConfig->intf( name ) );
      } );
   };
   value.object(
      optional( "trafficPolicies", [&]( JsonValue & v ) { readPolicies( v, *state.config ); } ),
      optional( "cpu", cpu ), optional( "interfaces", interfaces ) );
}

} // namespace tpcli
