// The installation statuses of one binding of a policy: a VRF's interfaces, or one interface.

#pragma once

#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "TrafficPolicy/platform/values/VrfName.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"

namespace TrafficPolicyCli {

class InterfaceStatus : public Vorn::PtrInterface {
   VORN_ENTITY( InterfaceStatus, Vorn::PtrInterface )

   InterfaceStatus() = default;

   VORN_SET( Vorn::Ptr< PolicyMap::IntfStatus const >, intfStatus )

   // All interfaces are programmed for the family, and there is at least one.
   bool isProgrammed( PolicyMap::ClassMapMatchOption option ) const;
   // At least one interface failed for the family.
   bool isFailed( PolicyMap::ClassMapMatchOption option ) const;
};

// The statuses of the interfaces of one VRF.
class VrfIntfStatus : public InterfaceStatus {
   VORN_ENTITY( VrfIntfStatus, InterfaceStatus )

   explicit VrfIntfStatus( L3::VrfName const & vrf )
      : vrfName_( vrf ) {}

   VORN_INPUT( L3::VrfName, vrfName )
};

// The error text of the first interface that is not programmed for the family, in the set's order:
// empty when that one has no text, even if a later one has. Empty for null, or when all are
// programmed.
Vorn::String getInstalledErrorString( InterfaceStatus const * interfaceStatus,
                                      PolicyMap::ClassMapMatchOption option );

Vorn::Ptr< InterfaceStatus > interfaceStatusFactory();
Vorn::Ptr< VrfIntfStatus > vrfIntfStatusFactory( L3::VrfName vrfName );

} // namespace TrafficPolicyCli
