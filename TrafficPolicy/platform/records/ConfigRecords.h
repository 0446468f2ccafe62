// The configuration that the shows read: policies, their rules, and where they are applied.
//
// A handle in a collection is not null; one that is null all the same is traced and skipped.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/records/ActionRecords.h"
#include "TrafficPolicy/platform/records/MatchRecords.h"
#include "TrafficPolicy/platform/values/IntfId.h"
#include "TrafficPolicy/platform/values/VrfName.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"

namespace PolicyMap {

// The definition of one class: its match condition per address family.
class TRAFFIC_POLICY_API ClassMapSubConfig : public Vorn::PtrInterface {
   VORN_RECORD( ClassMapSubConfig )

   VORN_HASHED_MAP( ClassMapMatchOption, Vorn::Ptr< ClassMapMatch const >, match )

   static constexpr unsigned prefetchSteps = 1;
   void prefetch( unsigned ) const {
      for ( auto const & [option, condition] : match_ ) {
         Vorn::prefetch( condition.get() );
      }
   }
};

using ClassConfigs = Vorn::HashMap< Vorn::String, Vorn::Ptr< ClassMapSubConfig const > >;

// One version of a policy.
class TRAFFIC_POLICY_API PolicyMapSubConfig : public Vorn::PtrInterface {
   VORN_RECORD( PolicyMapSubConfig )

   using ClassSequence = Vorn::SortedArray< uint32_t, Vorn::String >;

   explicit PolicyMapSubConfig( Vorn::String const & name )
      : policyName_( name ) {}

   VORN_INPUT( Vorn::String, policyName )

   // Class names by ascending rule sequence number: the order of the rules.
   ClassSequence const & classSequence() const { return classSequence_; }
   void classSequenceIs( uint32_t sequence, Vorn::String className ) {
      classSequence_.set( sequence, std::move( className ) );
   }

   VORN_HASHED_MAP( Vorn::String, Vorn::Ptr< ClassMapSubConfig const >, rawClassMap )
   VORN_HASHED_MAP( Vorn::String, Vorn::Ptr< ClassAction const >, classAction )
   VORN_SET( Vorn::String, namedCounter ) // the named counters that the policy declares

   // Reserves room for this many classes.
   void classesReserve( size_t classes ) {
      classSequence_.reserve( classes );
      rawClassMap_.reserve( classes );
      classAction_.reserve( classes );
   }

private:
   ClassSequence classSequence_;
};

// A policy: its committed version.
class TRAFFIC_POLICY_API PolicyMapConfig : public Vorn::PtrInterface {
   VORN_RECORD( PolicyMapConfig )

   VORN_SCALAR( Vorn::Ptr< PolicyMapSubConfig const >, currCfg ) // null: nothing is committed
};

// The policy configured on the CPU, by VRF. The name "all" means every VRF without an entry.
class TRAFFIC_POLICY_API VrfConfig : public Vorn::PtrInterface {
   VORN_RECORD( VrfConfig )

   VORN_HASHED_MAP( L3::VrfName, Vorn::String, trafficPolicies )
};

// The policy configured on each interface.
class TRAFFIC_POLICY_API IntfConfig : public Vorn::PtrInterface {
   VORN_RECORD( IntfConfig )

   VORN_HASHED_MAP( Pelx::IntfId, Vorn::String, intf )
};

} // namespace PolicyMap

namespace TrafficPolicy {

// All policies, by name.
class TRAFFIC_POLICY_API TrafficPolicyConfig : public Vorn::PtrInterface {
   VORN_RECORD( TrafficPolicyConfig )

   VORN_ORDERED_MAP( Vorn::String, Vorn::Ptr< PolicyMap::PolicyMapConfig const >, policyMapConfig )
};

} // namespace TrafficPolicy

namespace Ip {

// The VRFs that exist.
class TRAFFIC_POLICY_API AllVrfConfig : public Vorn::PtrInterface {
   VORN_RECORD( AllVrfConfig )

   VORN_SET( L3::VrfName, vrf )
};

} // namespace Ip
