#include "TrafficPolicy/platform/vorn/PtrInterface.h"

#include "TrafficPolicy/platform/vorn/TypeRecord.h"

namespace Vorn {

PtrInterface::~PtrInterface() = default;

NotifieeList * PtrInterface::notifieeList() const {
   return nullptr;
}

void PtrInterface::hasNotificationActiveIs( bool active ) {
   notificationActive_ = active;
}

void PtrInterface::zeroReferencesIs() {
   TypeRecord const & record = type();
   void * memory = dynamic_cast< void * >( this );
   this->~PtrInterface();
   record.deallocate( memory );
}

} // namespace Vorn
