#include "cli/Rates.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <algorithm>

namespace tpcli {

namespace {

using PolicyMap::PolicyMapStatus;

std::optional< double > rateOf( uint64_t before, uint64_t now, double seconds ) {
   if ( now < before ) {
      return std::nullopt;
   }
   return static_cast< double >( now - before ) / seconds;
}

template< typename Handle >
auto const * pointee( Handle const * handle ) {
   return handle ? handle->get() : nullptr;
}

class Comparison {
public:
   Comparison( State const & now, double seconds, PolicyMapStatus const & before,
               PolicyMapStatus const & after )
      : seconds_( seconds )
      , withBytes_( now.status->byteCountersSupported() )
      , before_( before )
      , after_( after ) {}

   std::vector< Rate > rates( PolicyMap::PolicyMapSubConfig const & config ) {
      std::vector< Rate > rates;
      Vorn::HashSet< Vorn::String > counters;
      for ( auto const & [sequence, rule] : config.classSequence() ) {
         wendo::interrupt::check();
         auto const * action = pointee( config.classAction( rule ) );
         auto const * count = action ? PolicyMap::actionAs< PolicyMap::CountAction >(
                                 action->policyAction( PolicyMap::ActionType::count ) )
                                     : nullptr;
         if ( !count || !after_.cmap( rule ) || ( *after_.cmap( rule ) )->match().empty() ) {
            continue;
         }
         if ( count->counterName().empty() ) {
            rates.push_back( ruleRate( rule ) );
         } else if ( config.namedCounter( count->counterName() )
                     && after_.counterStatus( count->counterName() )
                     && counters.insert( count->counterName() ) ) {
            rates.push_back( counterRate( count->counterName() ) );
         }
      }
      std::ranges::stable_sort( rates, []( Rate const & a, Rate const & b ) {
         return a.packets.value_or( -1 ) > b.packets.value_or( -1 );
      } );
      return rates;
   }

private:
   Rate ruleRate( Vorn::String const & name ) const {
      Rate rate{ name, true, {}, {} };
      auto const * before = pointee( before_.cmap( name ) );
      auto const * now = pointee( after_.cmap( name ) );
      if ( before && before->uniqueId() == now->uniqueId() ) {
         rate.packets = rateOf( before->packetCount(), now->packetCount(), seconds_ );
      }
      return rate;
   }

   Rate counterRate( Vorn::String const & name ) const {
      Rate rate{ name, false, {}, {} };
      auto const * before = pointee( before_.counterStatus( name ) );
      auto const * now = pointee( after_.counterStatus( name ) );
      if ( !before || !( before->uniqueId() == now->uniqueId() ) ) {
         return rate;
      }
      rate.packets = rateOf( before->total().packets, now->total().packets, seconds_ );
      auto const bytes = rateOf( before->total().bytes, now->total().bytes, seconds_ );
      if ( withBytes_ && bytes ) {
         rate.bits = *bytes * 8;
      }
      return rate;
   }

   double seconds_;
   bool withBytes_;
   PolicyMapStatus const & before_;
   PolicyMapStatus const & after_;
};

} // namespace

std::vector< PolicyRates > ratesOf( State const & before, State const & now, double seconds,
                                    std::string_view policy ) {
   std::vector< PolicyRates > result;
   for ( auto const & [name, status] : now.status->policyMapStatus() ) {
      if ( !policy.empty() && !( name == policy ) ) {
         continue;
      }
      PolicyRates & rates = result.emplace_back( PolicyRates{ .name = name, .rates = {} } );
      auto const * config = pointee( now.config->policyMapConfig( name ) );
      if ( config && config->currCfg() ) {
         static auto const none = Vorn::create< PolicyMapStatus >( Vorn::String() );
         auto const * old = pointee( before.status->policyMapStatus( name ) );
         rates.rates =
            Comparison( now, seconds, old ? *old : *none, *status ).rates( *config->currCfg() );
      }
   }
   return result;
}

} // namespace tpcli
