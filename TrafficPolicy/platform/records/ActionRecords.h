// What a rule does with the packets that it matches.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/values/EnumNames.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"
#include "TrafficPolicy/platform/vorn/Prefetch.h"

#include <cstdint>

namespace PolicyMap {

// The platform's action types that a traffic policy uses, with the platform's numbers.
enum class ActionType : uint32_t {
   drop = 5,
   setDscp = 7,
   setTc = 12,
   police = 13,
   count = 14,
   log = 16,
};
// Types above this one belong to other features.
inline constexpr uint32_t actionTypeMax = 21;

// Bits per second with decimal prefixes, packets per second.
enum class RateUnit : uint8_t { bps, kbps, mbps, gbps, pps };

constexpr wendo::PlainText nameOf( RateUnit unit ) {
   switch ( unit ) {
   case RateUnit::bps:
      return "bps";
   case RateUnit::kbps:
      return "kbps";
   case RateUnit::mbps:
      return "mbps";
   case RateUnit::gbps:
      return "gbps";
   case RateUnit::pps:
      return "pps";
   }
   return {};
}

inline constexpr Names::EnumNames< RateUnit, 5 > rateUnits( nameOf );

// The unit's text; empty for a value outside the enumeration.
inline wendo::PlainText const & rateUnitText( RateUnit unit ) {
   return rateUnits[unit];
}

// An action. Types without a value (drop, log) have a record of this class itself. Immutable, so
// that rules may share a record.
class TRAFFIC_POLICY_API Action : public Vorn::PtrInterface {
   VORN_RECORD( Action )

   explicit Action( ActionType type )
      : actionType_( type ) {}

   VORN_INPUT( ActionType, actionType )
};

// The action as a record of exactly this class; null for another class or a null action.
template< typename Record >
Record const * actionAs( Action const * action ) {
   return action && &action->type() == &Record::typeRecord()
             ? static_cast< Record const * >( action )
             : nullptr;
}

// Counts the packets.
class TRAFFIC_POLICY_API CountAction : public Action {
   VORN_RECORD( CountAction )

   explicit CountAction( Vorn::String const & name )
      : Action( ActionType::count )
      , counterName_( name ) {}

   VORN_INPUT( Vorn::String, counterName ) // empty: the rule's own counter
};

// Drops packets above a rate.
class TRAFFIC_POLICY_API PoliceAction : public Action {
   VORN_RECORD( PoliceAction )

   PoliceAction( uint64_t policedRate, RateUnit rateUnit )
      : Action( ActionType::police )
      , rate_( policedRate )
      , unit_( rateUnit ) {}

   VORN_INPUT( uint64_t, rate )
   VORN_INPUT( RateUnit, unit )
};

// Rewrites the DSCP field.
class TRAFFIC_POLICY_API SetDscpAction : public Action {
   VORN_RECORD( SetDscpAction )

   explicit SetDscpAction( uint8_t dscp )
      : Action( ActionType::setDscp )
      , value_( dscp ) {}

   VORN_INPUT( uint8_t, value ) // code point (RFC 2474), 0 to 63
};

// The actions of one class.
class TRAFFIC_POLICY_API ClassAction : public Vorn::PtrInterface {
   VORN_RECORD( ClassAction )

   // Most rules have one action and a count.
   using PolicyActions = Vorn::SortedArray< ActionType, Vorn::Ptr< Action const >, 2 >;

   // By ascending type. A handle is a record of the class that its type names, not null.
   PolicyActions const & policyAction() const { return policyAction_; }
   // The action of this type; null when there is none.
   Action const * policyAction( ActionType type ) const {
      auto const * action = policyAction_.lookup( type );
      return action ? action->get() : nullptr;
   }
   void policyActionIs( ActionType type, Vorn::Ptr< Action const > action ) {
      policyAction_.set( type, std::move( action ) );
   }
   // Reserves room for this many actions.
   void policyActionReserve( size_t actions ) { policyAction_.reserve( actions ); }

   static constexpr unsigned prefetchSteps = 1;
   void prefetch( unsigned ) const {
      for ( auto const & [type, action] : policyAction_ ) {
         Vorn::prefetch( action.get() );
      }
   }

private:
   PolicyActions policyAction_;
};

using ClassActions = Vorn::HashMap< Vorn::String, Vorn::Ptr< ClassAction const > >;

} // namespace PolicyMap

namespace TrafficPolicy {

// Assigns the traffic class.
class TRAFFIC_POLICY_API SetTcAction : public PolicyMap::Action {
   VORN_RECORD( SetTcAction )

   explicit SetTcAction( uint8_t trafficClass )
      : Action( PolicyMap::ActionType::setTc )
      , value_( trafficClass ) {}

   VORN_INPUT( uint8_t, value )
};

} // namespace TrafficPolicy
