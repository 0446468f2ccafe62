// The records that a source fills: what the shows and the clear command work on.

#pragma once

#include "TrafficPolicy/platform/records/ConfigRecords.h"
#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "TrafficPolicy/platform/vorn/Create.h"

#include <utility>

namespace tpcli {

// The policies of a VRF or an interface beside the one that its configuration record holds.
template< typename Binding >
class FurtherPolicies : public Vorn::PtrInterface {
   using Self = FurtherPolicies;
   VORN_RECORD( Self )

   using Policies = Vorn::HashSet< Vorn::String >;

   Vorn::HashMap< Binding, Policies > const & all() const { return all_; }
   // The policies there, or null.
   Policies const * at( Binding const & binding ) const { return all_.lookup( binding ); }
   // False when the policy is there already.
   bool add( Binding const & binding, Vorn::String const & policy ) {
      if ( auto * policies = all_.lookup( binding ) ) {
         return policies->insert( policy );
      }
      Policies policies;
      policies.insert( policy );
      return all_.set( binding, std::move( policies ) );
   }

private:
   Vorn::HashMap< Binding, Policies > all_;
};

struct State {
   Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig > config =
      Vorn::create< TrafficPolicy::TrafficPolicyConfig >();
   Vorn::Ptr< PolicyMap::VrfConfig > vrfConfig = Vorn::create< PolicyMap::VrfConfig >();
   Vorn::Ptr< PolicyMap::IntfConfig > intfConfig = Vorn::create< PolicyMap::IntfConfig >();
   Vorn::Ptr< FurtherPolicies< L3::VrfName > > furtherVrfPolicies =
      Vorn::create< FurtherPolicies< L3::VrfName > >();
   Vorn::Ptr< FurtherPolicies< Pelx::IntfId > > furtherIntfPolicies =
      Vorn::create< FurtherPolicies< Pelx::IntfId > >();

   Vorn::Ptr< TrafficPolicy::Status > status = Vorn::create< TrafficPolicy::Status >();
   Vorn::Ptr< Ip::AllVrfConfig > allVrfConfig = Vorn::create< Ip::AllVrfConfig >();
   Vorn::Ptr< L3::Intf::StatusDir > l3IntfStatusDir = Vorn::create< L3::Intf::StatusDir >();
   // Null where the source has no counter granularity.
   Vorn::Ptr< TrafficPolicy::TrafficPolicyIntfParamStatus > policyParamStatus;

   // Binds a policy beside those that are bound there. False when it was bound there already.
   bool bind( L3::VrfName const & vrf, Vorn::String const & policy );
   bool bind( Pelx::IntfId const & intf, Vorn::String const & policy );
   bool isBound( L3::VrfName const & vrf, Vorn::String const & policy ) const;
   bool isBound( Pelx::IntfId const & intf, Vorn::String const & policy ) const;
   // Calls the function with each VRF or interface and each policy that is bound there.
   template< typename Function >
   void forEachVrfBinding( Function const & function ) const {
      forEachBinding( vrfConfig->trafficPolicies(), *furtherVrfPolicies, function );
   }
   template< typename Function >
   void forEachIntfBinding( Function const & function ) const {
      forEachBinding( intfConfig->intf(), *furtherIntfPolicies, function );
   }

private:
   template< typename Bound, typename Binding, typename Function >
   static void forEachBinding( Bound const & bound, FurtherPolicies< Binding > const & further,
                               Function const & function ) {
      for ( auto const & [binding, policy] : bound ) {
         function( binding, policy );
         if ( auto const * others = further.all().empty() ? nullptr : further.at( binding ) ) {
            for ( Vorn::String const & other : *others ) {
               function( binding, other );
            }
         }
      }
   }
};

} // namespace tpcli
