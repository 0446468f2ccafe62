// Where a policy is installed and where that failed, for one address family: VRF lists for the CPU
// side, interface lists for the interface side. Ordered, as the views list them.

#pragma once

#include "TrafficPolicy/platform/records/MatchOption.h"
#include "TrafficPolicy/platform/values/VrfName.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"

namespace TrafficPolicyCli {

class PerAfVrfList : public Vorn::PtrInterface {
   VORN_ENTITY( PerAfVrfList, Vorn::PtrInterface )

   explicit PerAfVrfList( PolicyMap::ClassMapMatchOption option )
      : matchOption_( option ) {}

   VORN_INPUT( PolicyMap::ClassMapMatchOption, matchOption )
   VORN_ORDERED_MAP( L3::VrfName, bool, vrfList ) // membership; stored true
};

class PerAfIntfList : public Vorn::PtrInterface {
   VORN_ENTITY( PerAfIntfList, Vorn::PtrInterface )

   explicit PerAfIntfList( PolicyMap::ClassMapMatchOption option )
      : matchOption_( option ) {}

   VORN_INPUT( PolicyMap::ClassMapMatchOption, matchOption )
   VORN_ORDERED_MAP( Vorn::String, bool, intfList ) // membership; stored true
};

class InstallError : public Vorn::PtrInterface {
   VORN_ENTITY( InstallError, Vorn::PtrInterface )

   explicit InstallError( PolicyMap::ClassMapMatchOption option )
      : matchOption_( option ) {}

   VORN_INPUT( PolicyMap::ClassMapMatchOption, matchOption )
   VORN_ORDERED_MAP( L3::VrfName, Vorn::String, vrfError ) // the error text per VRF
};

class InterfaceInstallError : public Vorn::PtrInterface {
   VORN_ENTITY( InterfaceInstallError, Vorn::PtrInterface )

   explicit InterfaceInstallError( PolicyMap::ClassMapMatchOption option )
      : matchOption_( option ) {}

   VORN_INPUT( PolicyMap::ClassMapMatchOption, matchOption )
   VORN_ORDERED_MAP( Vorn::String, Vorn::String, intfError ) // the error text per interface
};

Vorn::Ptr< PerAfVrfList > perAfVrfListFactory( PolicyMap::ClassMapMatchOption matchOption );
Vorn::Ptr< PerAfIntfList > perAfIntfListFactory( PolicyMap::ClassMapMatchOption matchOption );
Vorn::Ptr< InstallError > installErrorFactory( PolicyMap::ClassMapMatchOption matchOption );
Vorn::Ptr< InterfaceInstallError >
interfaceInstallErrorFactory( PolicyMap::ClassMapMatchOption matchOption );

} // namespace TrafficPolicyCli
