#include "sources/State.h"

namespace tpcli {

namespace {

template< typename Binding >
bool bindFurther( FurtherPolicies< Binding > & further, Binding const & binding,
                  Vorn::String const & policy ) {
   if ( auto * policies = further.lookup( binding ) ) {
      return policies->insert( policy );
   }
   Vorn::HashSet< Vorn::String > policies;
   policies.insert( policy );
   return further.set( binding, std::move( policies ) );
}

} // namespace

bool State::bind( L3::VrfName const & vrf, Vorn::String const & policy ) {
   Vorn::String const * const first = vrfConfig->trafficPolicies( vrf );
   return !first             ? vrfConfig->trafficPoliciesIs( vrf, policy )
          : *first == policy ? false
                             : bindFurther( furtherVrfPolicies, vrf, policy );
}

bool State::bind( Pelx::IntfId const & intf, Vorn::String const & policy ) {
   Vorn::String const * const first = intfConfig->intf( intf );
   return !first             ? intfConfig->intfIs( intf, policy )
          : *first == policy ? false
                             : bindFurther( furtherIntfPolicies, intf, policy );
}

bool State::isBound( L3::VrfName const & vrf, Vorn::String const & policy ) const {
   Vorn::String const * const first = vrfConfig->trafficPolicies( vrf );
   auto const * const further = furtherVrfPolicies.lookup( vrf );
   return ( first && *first == policy ) || ( further && further->contains( policy ) );
}

bool State::isBound( Pelx::IntfId const & intf, Vorn::String const & policy ) const {
   Vorn::String const * const first = intfConfig->intf( intf );
   auto const * const further = furtherIntfPolicies.lookup( intf );
   return ( first && *first == policy ) || ( further && further->contains( policy ) );
}

} // namespace tpcli
