// What a rule does with the packets that it matches.

#pragma once

#include "TrafficPolicy/platform/values/PlainText.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"
#include "TrafficPolicy/platform/vorn/Prefetch.h"

#include <cstdint>

namespace PolicyMap {

// The platform's action types that a traffic policy uses.
enum class ActionType : uint32_t {
   drop = 5,
   setDscp = 7,
   setTc = 12,
   police = 13,
   count = 14,
   log = 16,
};
// Types above this one are no business of a traffic policy.
inline constexpr uint32_t actionTypeMax = 21;

enum class RateUnit : uint8_t { bps, kbps, mbps, gbps, pps };

inline wendo::PlainText const & rateUnitText( RateUnit unit ) {
   static constexpr wendo::PlainText texts[] = { "bps", "kbps", "mbps", "gbps", "pps" };
   return texts[static_cast< uint8_t >( unit )];
}

// Types without a value (drop, log) have a record of this class itself.
class Action : public Vorn::PtrInterface {
   VORN_RECORD( Action )

   explicit Action( ActionType type )
      : actionType_( type ) {}

   VORN_INPUT( ActionType, actionType )
};

// The action as a record of exactly this class, or null when it is none.
template< typename Record >
Record const * actionAs( Action const * action ) {
   return action && &action->type() == &Record::typeRecord()
             ? static_cast< Record const * >( action )
             : nullptr;
}

class CountAction : public Action {
   VORN_RECORD( CountAction )

   explicit CountAction( Vorn::String const & name )
      : Action( ActionType::count )
      , counterName_( name ) {}

   VORN_INPUT( Vorn::String, counterName ) // empty: the rule's own counter
};

class PoliceAction : public Action {
   VORN_RECORD( PoliceAction )

   PoliceAction( uint64_t policedRate, RateUnit rateUnit )
      : Action( ActionType::police )
      , rate_( policedRate )
      , unit_( rateUnit ) {}

   VORN_INPUT( uint64_t, rate )
   VORN_INPUT( RateUnit, unit )
};

class SetDscpAction : public Action {
   VORN_RECORD( SetDscpAction )

   explicit SetDscpAction( uint8_t dscp )
      : Action( ActionType::setDscp )
      , value_( dscp ) {}

   VORN_INPUT( uint8_t, value ) // a DSCP code point (RFC 2474), 0 to 63
};

class ClassAction : public Vorn::PtrInterface {
   VORN_RECORD( ClassAction )

   using PolicyActions = Vorn::SortedArray< ActionType, Vorn::Ptr< Action const > >;

   // By ascending type.
   PolicyActions const & policyAction() const { return policyAction_; }
   // The action of this type, or null.
   Action const * policyAction( ActionType type ) const {
      auto const * action = policyAction_.lookup( type );
      return action ? action->get() : nullptr;
   }
   void policyActionIs( ActionType type, Vorn::Ptr< Action const > const & action ) {
      policyAction_.set( type, action );
   }
   // Asks for the memory of the actions' list.
   void prefetch() const { policyAction_.prefetch(); }
   void policyActionReserve( size_t actions ) { policyAction_.reserve( actions ); }

private:
   PolicyActions policyAction_;
};

using ClassActions = Vorn::HashMap< Vorn::String, Vorn::Ptr< ClassAction const > >;

// Asks for the actions of rules to come, which are found one through the other: what one step asks
// for has arrived when the next step looks into it, some rules later.
inline void prefetchActions( ClassActions::Cursor const & actions ) {
   constexpr uint32_t far = 12; // rules
   constexpr uint32_t middle = 8;
   constexpr uint32_t near = 4;
   if ( auto const * rule = actions.ahead( far ) ) {
      Vorn::prefetch( rule->get() );
   }
   if ( auto const * rule = actions.ahead( middle ) ) {
      ( *rule )->prefetch();
   }
   if ( auto const * rule = actions.ahead( near ) ) {
      for ( auto const & [type, action] : ( *rule )->policyAction() ) {
         Vorn::prefetch( action.get() );
      }
   }
}

} // namespace PolicyMap

namespace TrafficPolicy {

class SetTcAction : public PolicyMap::Action {
   VORN_RECORD( SetTcAction )

   explicit SetTcAction( uint8_t trafficClass )
      : Action( PolicyMap::ActionType::setTc )
      , value_( trafficClass ) {}

   VORN_INPUT( uint8_t, value ) // a traffic class
};

} // namespace TrafficPolicy
