// What a policy is bound to, as data: the steps that the CPU side and the interface side share are
// written once, over one of these two descriptions.

#pragma once

#include "TrafficPolicy/model/PolicyStateCpu.h"
#include "TrafficPolicy/model/PolicyStateInterface.h"
#include "TrafficPolicy/platform/Export.h"

namespace TrafficPolicyCli {

using PolicyMap::ClassMapMatchOption;

// Policies on the CPU, bound to VRFs.
struct TRAFFIC_POLICY_API CpuBinding {
   using State = PolicyStateCpu;
   using Name = L3::VrfName;
   using Names = Vorn::OrderedMap< Name, bool >;
   using Texts = Vorn::OrderedMap< Name, Vorn::String >;

   static Vorn::String const & string( Name const & vrf ) { return vrf.string(); }

   // The name under which the configuration's key is cached.
   static Name const & name( L3::VrfName const & vrf ) { return vrf; }

   static Names const & configured( State const & state ) { return state.configuredVrf(); }
   static void configuredIs( State & state, Name const & vrf ) {
      state.configuredVrfIs( vrf, true );
   }
   // By name, the statuses of the binding's interfaces.
   static auto const & statuses( State const & state ) { return state.vrfIntfStatus(); }
   // Null where there is no list for the family.
   static Names const * applied( State const & state, ClassMapMatchOption option ) {
      PerAfVrfList const * list = state.appliedVrf( option );
      return list ? &list->vrfList() : nullptr;
   }
   static Names const * failed( State const & state, ClassMapMatchOption option ) {
      PerAfVrfList const * list = state.failedVrf( option );
      return list ? &list->vrfList() : nullptr;
   }
   static bool anyFailed( State const & state ) { return !state.failedVrf().empty(); }
   static Texts const * errors( State const & state, ClassMapMatchOption option ) {
      InstallError const * errors = state.installErrorColl( option );
      return errors ? &errors->vrfError() : nullptr;
   }

   static void appliedIs( State & state, ClassMapMatchOption option, Name const & vrf ) {
      state.appliedVrfIs( option )->vrfListIs( vrf, true );
   }
   static void failedIs( State & state, ClassMapMatchOption option, Name const & vrf ) {
      state.failedVrfIs( option )->vrfListIs( vrf, true );
   }
   static void errorIs( State & state, ClassMapMatchOption option, Name const & vrf,
                        Vorn::String const & text ) {
      state.installErrorCollIs( option )->vrfErrorIs( vrf, text );
   }
};

// Policies on interfaces.
struct TRAFFIC_POLICY_API InterfaceBinding {
   using State = PolicyStateInterface;
   using Name = Vorn::String;
   using Names = Vorn::OrderedMap< Name, bool >;
   using Texts = Vorn::OrderedMap< Name, Vorn::String >;

   static Vorn::String const & string( Name const & intf ) { return intf; }

   static Name const & name( Pelx::IntfId const & intf ) { return intf.string(); }

   static Names const & configured( State const & state ) { return state.configuredIntf(); }
   static void configuredIs( State & state, Name const & intf ) {
      state.configuredIntfIs( intf, true );
   }
   static auto const & statuses( State const & state ) { return state.interfaceStatus(); }
   static Names const * applied( State const & state, ClassMapMatchOption option ) {
      PerAfIntfList const * list = state.appliedIntf( option );
      return list ? &list->intfList() : nullptr;
   }
   static Names const * failed( State const & state, ClassMapMatchOption option ) {
      PerAfIntfList const * list = state.failedIntf( option );
      return list ? &list->intfList() : nullptr;
   }
   static bool anyFailed( State const & state ) { return !state.failedIntf().empty(); }
   static Texts const * errors( State const & state, ClassMapMatchOption option ) {
      InterfaceInstallError const * errors = state.installErrorColl( option );
      return errors ? &errors->intfError() : nullptr;
   }

   static void appliedIs( State & state, ClassMapMatchOption option, Name const & intf ) {
      state.appliedIntfIs( option )->intfListIs( intf, true );
   }
   static void failedIs( State & state, ClassMapMatchOption option, Name const & intf ) {
      state.failedIntfIs( option )->intfListIs( intf, true );
   }
   static void errorIs( State & state, ClassMapMatchOption option, Name const & intf,
                        Vorn::String const & text ) {
      state.installErrorCollIs( option )->intfErrorIs( intf, text );
   }
};

// The policy's record as one of the binding's side. A cache that holds a record of the other side
// is a broken invariant.
template< typename Binding >
typename Binding::State & stateOfSide( PolicyState & policyState ) {
   auto * const stateOfSide = dynamic_cast< typename Binding::State * >( &policyState );
   VORN_ASSERT( stateOfSide );
   return *stateOfSide;
}

} // namespace TrafficPolicyCli
