// Which of the cached policies a view shows.

#pragma once

#include "TrafficPolicy/model/PolicyState.h"

namespace TrafficPolicyCli {

struct Selection {
   using Policies = Vorn::OrderedMap< Vorn::String, Vorn::Ptr< PolicyState > >;

   Policies const & policies;
   Vorn::String const & policyName; // empty: all

   // Calls the function with each selected policy, in name order.
   template< typename Function >
   void forEach( Function const & function ) const {
      for ( auto const & [name, state] : policies ) {
         if ( policyName.empty() || policyName == name ) {
            function( *state );
         }
      }
   }
};

} // namespace TrafficPolicyCli
