// Which of the cached policies a view shows.

#pragma once

#include "TrafficPolicy/model/PolicyState.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"

namespace TrafficPolicyCli {

struct Selection {
   using Policies = Vorn::OrderedMap< Vorn::String, Vorn::Ptr< PolicyState > >;

   Policies const & policies;
   Vorn::String const & policyName; // empty: all

   // Calls the function with each selected policy, in name order. Throws wendo::SigIntException
   // when the user interrupts the command.
   template< typename Function >
   void forEach( Function const & function ) const {
      for ( auto const & [name, state] : policies ) {
         wendo::interrupt::check();
         if ( policyName.empty() || policyName == name ) {
            VORN_ASSERT( state );
            function( *state );
         }
      }
   }
};

} // namespace TrafficPolicyCli
