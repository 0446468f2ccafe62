// What the show objects of the two sides have in common: the steps of the installation caching,
// over the description of the side's binding.

#pragma once

#include "TrafficPolicy/engine/ShowTrafficPolicyBase.h"
#include "TrafficPolicy/platform/Export.h"

namespace TrafficPolicyCli {

// Show is the side's show object, which defines what differs:
//    configuredPolicies() - the configuration's map from binding to policy name;
//    intfStatusIs( state, interface, status ) - stores an interface's status under its binding.
// Binding is CpuBinding or InterfaceBinding. The members are defined in SideCaching.h, for the
// source file of each side.
template< typename Show, typename Binding >
class TRAFFIC_POLICY_API ShowTrafficPolicySide : public ShowTrafficPolicyBase {
public:
   // First records where each policy is configured, then caches every policy that has a status.
   void cachePoliciesState() override;
   void cacheIntfStatus(
      Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus ) override;
   void cacheInstalledState( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
                             PolicyMap::ClassMapMatchOption matchOption ) override;
   void cacheInstallError( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
                           PolicyMap::ClassMapMatchOption matchOption ) override;
   // The policy's record, created if there is none.
   Vorn::Ptr< PolicyState > getOrCreatePolicyState( Vorn::String policyName ) override;

protected:
   ShowTrafficPolicySide() = default;

private:
   Show const & show() const { return static_cast< Show const & >( *this ); }
};

} // namespace TrafficPolicyCli
