// The library's show objects, for a state in which several policies are bound to one VRF or
// interface.

#pragma once

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "TrafficPolicy/model/Binding.h"
#include "sources/State.h"

#include <utility>

namespace tpcli {

// Says of the further policies, too, where they are configured.
template< typename Show, typename Binding, typename Key >
class BoundShow : public Show {
   using Self = BoundShow;
   VORN_RECORD( Self )

   template< typename... Inputs >
   explicit BoundShow( Vorn::Ptr< FurtherPolicies< Key > const > const & further,
                       Inputs &&... inputs )
      : Show( std::forward< Inputs >( inputs )... )
      , further_( further ) {}

   void cachePoliciesState() override {
      Show::cachePoliciesState();
      for ( auto const & [binding, policies] : further_->all() ) {
         for ( Vorn::String const & policy : policies ) {
            wendo::interrupt::check();
            auto const state = this->getOrCreatePolicyState( policy );
            Binding::configuredIs( TrafficPolicyCli::stateOfSide< Binding >( *state ),
                                   Binding::name( binding ) );
         }
      }
   }

private:
   Vorn::Ptr< FurtherPolicies< Key > const > further_;
};

using BoundShowCpu =
   BoundShow< TrafficPolicyCli::ShowTrafficPolicyCpu, TrafficPolicyCli::CpuBinding, L3::VrfName >;
using BoundShowInterface = BoundShow< TrafficPolicyCli::ShowTrafficPolicyInterface,
                                      TrafficPolicyCli::InterfaceBinding, Pelx::IntfId >;

} // namespace tpcli
