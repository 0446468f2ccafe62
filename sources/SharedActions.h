// Action records that rules share: they are immutable, and most rules of a policy have one of a few
// actions.

#pragma once

#include "TrafficPolicy/platform/records/ActionRecords.h"
#include "TrafficPolicy/platform/vorn/Create.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tpcli {

class SharedActions {
public:
   using Action = Vorn::Ptr< PolicyMap::Action const >;

   // An action without a value.
   Action plain( PolicyMap::ActionType type ) {
      Action & action = type == PolicyMap::ActionType::drop ? drop_ : log_;
      if ( !action || action->actionType() != type ) {
         action = Vorn::create< PolicyMap::Action >( type );
      }
      return action;
   }
   // A count into the counter; empty: the rule's own.
   Action count( std::string_view counter ) {
      for ( auto const & known : counts_ ) {
         if ( known && known->counterName() == counter ) {
            return known;
         }
      }
      auto & place = counts_[next_++ % counts_.size()];
      place = Vorn::create< PolicyMap::CountAction >( Vorn::String( counter ) );
      return place;
   }

private:
   Action drop_;
   Action log_;
   // The last few counters: each name is stored once, too.
   std::array< Vorn::Ptr< PolicyMap::CountAction const >, 8 > counts_;
   size_t next_ = 0;
};

} // namespace tpcli
