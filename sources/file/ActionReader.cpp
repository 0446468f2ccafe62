// A rule's actions.

#include "sources/SharedActions.h"
#include "sources/file/StateReader.h"
#include "sources/file/ValueReaders.h"

namespace tpcli {

namespace {

using PolicyMap::Action;
using PolicyMap::ActionType;
using PolicyMap::RateUnit;

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
      auto const dscp = static_cast< uint8_t >( v.number( "a DSCP value", 63 ) );
      add( ActionType::setDscp, Vorn::create< PolicyMap::SetDscpAction >( dscp ) );
   };
   auto const setTrafficClass = [&]( JsonValue & v ) {
      auto const tc = static_cast< uint8_t >( v.number( "a traffic class", 255 ) );
      add( ActionType::setTc, Vorn::create< TrafficPolicy::SetTcAction >( tc ) );
   };
   auto const police = [&]( JsonValue & v ) { add( ActionType::police, readPolice( v ) ); };
   value.object( optional( "drop", flag( ActionType::drop ) ),
                 optional( "log", flag( ActionType::log ) ), optional( "count", count ),
                 optional( "police", police ), optional( "setDscp", setDscp ),
                 optional( "setTrafficClass", setTrafficClass ) );
   return actions;
}

} // namespace tpcli
