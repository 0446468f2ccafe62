#include "sources/State.h"

namespace tpcli {

bool State::bind( L3::VrfName const & vrf, Vorn::String const & policy ) {
   Vorn::String const * const first = vrfConfig->trafficPolicies( vrf );
   return !first             ? vrfConfig->trafficPoliciesIs( vrf, policy )
          : *first == policy ? false
                             : furtherVrfPolicies->add( vrf, policy );
}

bool State::bind( Pelx::IntfId const & intf, Vorn::String const & policy ) {
   Vorn::String const * const first = intfConfig->intf( intf );
   return !first             ? intfConfig->intfIs( intf, policy )
          : *first == policy ? false
                             : furtherIntfPolicies->add( intf, policy );
}

bool State::isBound( L3::VrfName const & vrf, Vorn::String const & policy ) const {
   Vorn::String const * const first = vrfConfig->trafficPolicies( vrf );
   auto const * const further = furtherVrfPolicies->at( vrf );
   return ( first && *first == policy ) || ( further && further->contains( policy ) );
}

bool State::isBound( Pelx::IntfId const & intf, Vorn::String const & policy ) const {
   Vorn::String const * const first = intfConfig->intf( intf );
   auto const * const further = furtherIntfPolicies->at( intf );
   return ( first && *first == policy ) || ( further && further->contains( policy ) );
}

} // namespace tpcli
