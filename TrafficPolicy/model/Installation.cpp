#include "TrafficPolicy/model/Installation.h"

#include "TrafficPolicy/platform/vorn/Describe.h"

namespace TrafficPolicyCli {

VORN_TYPE( PerAfVrfList )
VORN_TYPE( PerAfIntfList )
VORN_TYPE( InstallError )
VORN_TYPE( InterfaceInstallError )

Vorn::Ptr< PerAfVrfList > perAfVrfListFactory( PolicyMap::ClassMapMatchOption matchOption ) {
   return Vorn::create< PerAfVrfList >( matchOption );
}

Vorn::Ptr< PerAfIntfList > perAfIntfListFactory( PolicyMap::ClassMapMatchOption matchOption ) {
   return Vorn::create< PerAfIntfList >( matchOption );
}

Vorn::Ptr< InstallError > installErrorFactory( PolicyMap::ClassMapMatchOption matchOption ) {
   return Vorn::create< InstallError >( matchOption );
}

Vorn::Ptr< InterfaceInstallError >
interfaceInstallErrorFactory( PolicyMap::ClassMapMatchOption matchOption ) {
   return Vorn::create< InterfaceInstallError >( matchOption );
}

} // namespace TrafficPolicyCli
