#include "TrafficPolicy/model/InterfaceStatus.h"

#include "TrafficPolicy/platform/vorn/Describe.h"

#include <algorithm>

namespace TrafficPolicyCli {

VORN_TYPE( InterfaceStatus )
VORN_TYPE( VrfIntfStatus )

namespace {

using PolicyMap::InstalledStatus;

// An interface that has no entry for the family yet, or no record, counts as code 0 without a text.
InstalledStatus installedStatus( PolicyMap::IntfStatus const * intf,
                                 PolicyMap::ClassMapMatchOption option ) {
   InstalledStatus const * status = intf ? intf->installed( option ) : nullptr;
   return status ? *status : InstalledStatus();
}

} // namespace

bool InterfaceStatus::isProgrammed( PolicyMap::ClassMapMatchOption option ) const {
   return !intfStatus().empty()
          && std::all_of( intfStatus().begin(), intfStatus().end(), [&]( auto const & intf ) {
                return installedStatus( intf.get(), option ).status == InstalledStatus::programmed;
             } );
}

bool InterfaceStatus::isFailed( PolicyMap::ClassMapMatchOption option ) const {
   return std::any_of( intfStatus().begin(), intfStatus().end(), [&]( auto const & intf ) {
      return installedStatus( intf.get(), option ).status == InstalledStatus::failed;
   } );
}

Vorn::String getInstalledErrorString( InterfaceStatus const * interfaceStatus,
                                      PolicyMap::ClassMapMatchOption option ) {
   if ( interfaceStatus ) {
      for ( auto const & intf : interfaceStatus->intfStatus() ) {
         InstalledStatus const installed = installedStatus( intf.get(), option );
         if ( installed.status != InstalledStatus::programmed ) {
            return installed.error;
         }
      }
   }
   return {};
}

Vorn::Ptr< InterfaceStatus > interfaceStatusFactory() {
   return Vorn::create< InterfaceStatus >();
}

Vorn::Ptr< VrfIntfStatus > vrfIntfStatusFactory( L3::VrfName vrfName ) {
   return Vorn::create< VrfIntfStatus >( vrfName );
}

} // namespace TrafficPolicyCli
