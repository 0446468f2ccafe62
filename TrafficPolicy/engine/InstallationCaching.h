// The installation caching that both sides share: which bindings of a policy are applied, which
// failed, and why, for one address family.

#pragma once

#include "TrafficPolicy/model/Binding.h"
#include "TrafficPolicy/model/Trace.h"

namespace TrafficPolicyCli {

// Sorts the policy's bindings into applied and failed ones. One that is neither stays in no list.
template< typename Binding >
void cacheInstalledState( typename Binding::State & state, ClassMapMatchOption option ) {
   for ( auto const & [name, status] : Binding::statuses( state ) ) {
      if ( status->isProgrammed( option ) ) {
         trace.write( 7, "Applied on ", name );
         Binding::appliedIs( state, option, name );
      } else if ( status->isFailed( option ) ) {
         trace.write( 7, "Failed on ", name );
         Binding::failedIs( state, option, name );
      } else {
         trace.write( 7, "", name, " is not processed" );
      }
   }
}

// Stores the error text of each binding that failed.
template< typename Binding >
void cacheInstallError( typename Binding::State & state, ClassMapMatchOption option ) {
   typename Binding::Names const * failed = Binding::failed( state, option );
   if ( !failed ) {
      trace.write( 8, "No failures for option: ", option );
      return;
   }
   state.installErrorCollIs( option );
   for ( auto const & [name, member] : *failed ) {
      auto const * status = Binding::statuses( state ).lookup( name );
      Binding::errorIs( state, option, name,
                        getInstalledErrorString( status ? status->get() : nullptr, option ) );
   }
}

} // namespace TrafficPolicyCli
