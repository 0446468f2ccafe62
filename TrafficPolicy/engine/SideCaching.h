// The installation caching that both sides share: where each policy is configured, where it is
// applied, where that failed, and why.

#pragma once

#include "TrafficPolicy/engine/ShowTrafficPolicySide.h"
#include "TrafficPolicy/model/Binding.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/wendo/Interrupt.h"

namespace TrafficPolicyCli {

// The policy's record in the show object's cache.
template< typename Binding, typename Show >
typename Binding::State & stateIn( Show & show, Vorn::String const & policyName ) {
   auto const policyState = show.getOrCreatePolicyState( policyName );
   VORN_ASSERT( policyState );
   return stateOfSide< Binding >( *policyState );
}

template< typename Show, typename Binding >
Vorn::Ptr< PolicyState >
ShowTrafficPolicySide< Show, Binding >::getOrCreatePolicyState( Vorn::String policyName ) {
   if ( auto const * present = policyState( policyName ) ) {
      return *present;
   }
   Vorn::Ptr< PolicyState > state = Vorn::create< typename Binding::State >( policyName );
   policyStateIs( policyName, state );
   return state;
}

template< typename Show, typename Binding >
void ShowTrafficPolicySide< Show, Binding >::cachePoliciesState() {
   for ( auto const & [binding, policyName] : show().configuredPolicies() ) {
      wendo::interrupt::check();
      Binding::configuredIs( stateIn< Binding >( *this, policyName ), Binding::name( binding ) );
   }
   ShowTrafficPolicyBase::cachePoliciesState();
}

template< typename Show, typename Binding >
void ShowTrafficPolicySide< Show, Binding >::cacheIntfStatus(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus ) {
   trace.write( 8, "virtual void ", Show::typeRecord().name(),
                "::cacheIntfStatus(const PtrConst&)" );
   auto & state = stateIn< Binding >( *this, policyMapStatus->name() );
   for ( auto const & [intf, intfStatus] : policyMapStatus->intfStatus() ) {
      wendo::interrupt::check();
      if ( intfStatus ) {
         show().intfStatusIs( state, intf, intfStatus );
      } else {
         trace.write( 7, "IntfStatus not found for ", intf );
      }
   }
}

// Sorts the policy's bindings into applied and failed ones; one that is neither is in neither list.
template< typename Show, typename Binding >
void ShowTrafficPolicySide< Show, Binding >::cacheInstalledState(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
   PolicyMap::ClassMapMatchOption matchOption ) {
   trace.write( 8, "virtual void ", Show::typeRecord().name(),
                "::cacheInstalledState(const PtrConst&, PolicyMap::ClassMapMatchOption) "
                "matchOption ",
                matchOption );
   auto & state = stateIn< Binding >( *this, policyMapStatus->name() );
   for ( auto const & [name, status] : Binding::statuses( state ) ) {
      wendo::interrupt::check();
      if ( status && status->isProgrammed( matchOption ) ) {
         trace.write( 7, "Applied on ", name );
         Binding::appliedIs( state, matchOption, name );
      } else if ( status && status->isFailed( matchOption ) ) {
         trace.write( 7, "Failed on ", name );
         Binding::failedIs( state, matchOption, name );
      } else {
         trace.write( 7, "", name, " is not processed" );
      }
   }
}

// Stores the error text of each binding that failed.
template< typename Show, typename Binding >
void ShowTrafficPolicySide< Show, Binding >::cacheInstallError(
   Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
   PolicyMap::ClassMapMatchOption matchOption ) {
   trace.write( 8, "virtual void ", Show::typeRecord().name(),
                "::cacheInstallError(const PtrConst&, PolicyMap::ClassMapMatchOption), option:",
                matchOption );
   auto & state = stateIn< Binding >( *this, policyMapStatus->name() );
   auto const * failed = Binding::failed( state, matchOption );
   if ( !failed ) {
      trace.write( 8, "No failures for option: ", matchOption );
      return;
   }
   state.installErrorCollIs( matchOption );
   for ( auto const & [name, member] : *failed ) {
      wendo::interrupt::check();
      auto const * status = Binding::statuses( state ).lookup( name );
      Binding::errorIs( state, matchOption, name,
                        getInstalledErrorString( status ? status->get() : nullptr, matchOption ) );
   }
}

} // namespace TrafficPolicyCli
