// The base of every entity: a reference count inside the object, and the framework's virtual slots.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/vorn/Threading.h"

#include <cstdint>

namespace Vorn {

class NotifieeList; // change listeners; show commands run to their end without any
class TypeRecord;

class TRAFFIC_POLICY_API PtrInterface {
public:
   PtrInterface( PtrInterface const & ) = delete;
   PtrInterface & operator=( PtrInterface const & ) = delete;

   // The order of these virtual functions is the binary contract with the command layer.

   // The entity's listeners, or null when it keeps none.
   virtual NotifieeList * notifieeList() const;
   // A factory turns this on when construction is complete.
   virtual void hasNotificationActiveIs( bool active );
   // Called when the last reference is dropped; destroys the entity and releases its memory.
   virtual void zeroReferencesIs();
   // The record that describes the entity's most derived class and counts its objects.
   virtual TypeRecord const & type() const = 0;

protected:
   PtrInterface() = default;
   virtual ~PtrInterface();

public:
   bool hasNotificationActive() const { return notificationActive_; }

   void referenceAdd() const { countAdd( references_, 1u ); }
   void referenceDrop() const {
      if ( countSub( references_, 1u ) == 0 ) {
         const_cast< PtrInterface * >( this )->zeroReferencesIs();
      }
   }
   uint32_t references() const { return references_; }

private:
   mutable uint32_t references_ = 0;
   bool notificationActive_ = false;
};

} // namespace Vorn
