// A rule's actions.

#include "sources/SharedActions.h"
#include "sources/file/StateReader.h"
#include "sources/file/ValueReaders.h"

namespace tpcli {

namespace {

using PolicyMap::Action;
using PolicyMap::ActionType;
using PolicyMap::RateUnit;

// The member that holds an action of the type. Without a default, so that the compiler finds an
// action type that is not read here.
consteval std::string_view memberOf( ActionType type ) {
   switch ( type ) {
   case ActionType::drop:
      return "drop";
   case ActionType::setDscp:
      return "setDscp";
   case ActionType::setTc:
      return "setTrafficClass";
   case ActionType::police:
      return "police";
   case ActionType::count:
      return "count";
   case ActionType::log:
      return "log";
   }
   return {};
}

Vorn::Ptr< Action const > readPolice( JsonValue & value ) {
   uint64_t rate = 0;
   RateUnit unit{};
   auto const readUnit = [&]( JsonValue & v ) {
      unit = readEnum( v, PolicyMap::rateUnits, RateUnit::bps, RateUnit::kbps, RateUnit::mbps,
                       RateUnit::gbps, RateUnit::pps );
   };
   value.object( required( "rate", [&]( JsonValue & v ) { rate = v.number( "a rate" ); } ),
                 required( "unit", readUnit ) );
   return Vorn::create< PolicyMap::PoliceAction >( rate, unit );
}

} // namespace

Vorn::Ptr< PolicyMap::ClassAction const > readActions( JsonValue & value, SharedActions & shared ) {
   auto const actions = Vorn::create< PolicyMap::ClassAction >();
   auto const add = [&]( ActionType type, Vorn::Ptr< Action const > const & action ) {
      actions->policyActionIs( type, action );
   };
   auto const flag = [&]( ActionType type ) {
      return [&add, &shared, type]( JsonValue & v ) {
         if ( v.boolean() ) {
            add( type, shared.plain( type ) );
         }
      };
   };
   auto const count = [&]( JsonValue & v ) {
      if ( v.isBoolean() ) {
         if ( v.boolean() ) {
            add( ActionType::count, shared.count( {} ) );
         }
      } else {
         add( ActionType::count, shared.count( v.name( "a counter name" ) ) );
      }
   };
   auto const setDscp = [&]( JsonValue & v ) {
      auto const dscp = static_cast< uint8_t >( readNumber( v, dscpValues ) );
      add( ActionType::setDscp, Vorn::create< PolicyMap::SetDscpAction >( dscp ) );
   };
   auto const setTrafficClass = [&]( JsonValue & v ) {
      auto const tc = static_cast< uint8_t >( v.number( "a traffic class", 255 ) );
      add( ActionType::setTc, Vorn::create< TrafficPolicy::SetTcAction >( tc ) );
   };
   auto const police = [&]( JsonValue & v ) { add( ActionType::police, readPolice( v ) ); };
   value.object( optional( memberOf( ActionType::drop ), flag( ActionType::drop ) ),
                 optional( memberOf( ActionType::log ), flag( ActionType::log ) ),
                 optional( memberOf( ActionType::count ), count ),
                 optional( memberOf( ActionType::police ), police ),
                 optional( memberOf( ActionType::setDscp ), setDscp ),
                 optional( memberOf( ActionType::setTc ), setTrafficClass ) );
   return actions;
}

} // namespace tpcli
