// What the hardware side reports: which rules are installed, where, and their counts.
//
// A handle in a collection is not null; one that is null all the same is traced and skipped.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/records/CounterRecords.h"
#include "TrafficPolicy/platform/records/MatchOption.h"
#include "TrafficPolicy/platform/values/IntfId.h"
#include "TrafficPolicy/platform/values/VrfName.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"

namespace PolicyMap {

// The result of an installation in one address family.
struct InstalledStatus {
   static constexpr uint8_t programmed = 1;
   static constexpr uint8_t failed = 2;

   uint8_t status = 0; // any other code: not processed
   Vorn::String error; // shown when the installation failed; may be empty
};

// The codes that have a name.
struct InstalledStatusName {
   uint8_t code;
   wendo::PlainText name;
};
inline constexpr InstalledStatusName installedStatusNames[] = {
   { InstalledStatus::programmed, "programmed" }, { InstalledStatus::failed, "failed" }
};

// The installation of a policy on one interface.
class TRAFFIC_POLICY_API IntfStatus : public Vorn::PtrInterface {
   VORN_RECORD( IntfStatus )

   VORN_HASHED_MAP( ClassMapMatchOption, InstalledStatus, installed )
};

// A class that the hardware side has processed.
class TRAFFIC_POLICY_API ClassMapStatus : public Vorn::PtrInterface {
   VORN_RECORD( ClassMapStatus )

   explicit ClassMapStatus( Vorn::String const & className )
      : name_( className ) {}

   VORN_INPUT( Vorn::String, name )
   VORN_SET( ClassMapMatchOption, match ) // the family it is programmed for, at most one
   size_t matchs() const { return match().size(); }
   VORN_SCALAR( Umbo::UniqueId, uniqueId )
   VORN_SCALAR( uint64_t, packetCount ) // packets since the id was issued

   static constexpr unsigned prefetchSteps = 1;
   void prefetch( unsigned ) const { Vorn::prefetch( name_.data() ); }
};

using ClassStatuses = Vorn::HashMap< Vorn::String, Vorn::Ptr< ClassMapStatus const > >;

// A policy that the hardware side has processed.
class TRAFFIC_POLICY_API PolicyMapStatus : public Vorn::PtrInterface {
   VORN_RECORD( PolicyMapStatus )

   explicit PolicyMapStatus( Vorn::String const & policyName )
      : name_( policyName ) {}

   VORN_INPUT( Vorn::String, name )
   VORN_HASHED_MAP( Vorn::String, Vorn::Ptr< ClassMapStatus const >, cmap )
   VORN_HASHED_MAP( Vorn::String, Vorn::Ptr< PacketDataStatus const >, counterStatus )
   VORN_HASHED_MAP( Pelx::IntfId, Vorn::Ptr< IntfStatus const >, intfStatus )
   // Reserves room for this many classes.
   void cmapReserve( size_t classes ) { cmap_.reserve( classes ); }
};

// The status of all policies of a type.
class TRAFFIC_POLICY_API PolicyMapTypeStatus : public Vorn::PtrInterface {
   VORN_RECORD( PolicyMapTypeStatus )

   VORN_ORDERED_MAP( Vorn::String, Vorn::Ptr< PolicyMapStatus const >, policyMapStatus )
   VORN_SCALAR( bool, perIntfCounting ) // named counters are kept per interface
};

} // namespace PolicyMap

namespace TrafficPolicy {

// The status of all traffic policies.
class TRAFFIC_POLICY_API Status : public PolicyMap::PolicyMapTypeStatus {
   VORN_RECORD( Status )

   VORN_SCALAR( bool, byteCountersSupported ) // the hardware counts bytes beside packets
};

// How the hardware keeps named counters of ingress policies.
enum class CounterGranularity : uint8_t { unknown = 0, perPolicy = 1, perInterface = 2 };

constexpr wendo::PlainText nameOf( CounterGranularity granularity ) {
   switch ( granularity ) {
   case CounterGranularity::unknown:
      return "unknown";
   case CounterGranularity::perPolicy:
      return "per-policy";
   case CounterGranularity::perInterface:
      return "per-interface";
   }
   return {};
}

inline constexpr Names::EnumNames< CounterGranularity, 3 > counterGranularities( nameOf );

// Capabilities of policies on interfaces.
class TRAFFIC_POLICY_API TrafficPolicyIntfParamStatus : public Vorn::PtrInterface {
   VORN_RECORD( TrafficPolicyIntfParamStatus )

   VORN_SCALAR( CounterGranularity, ingressCounterGranularity )
};

} // namespace TrafficPolicy

namespace L3::Intf {

// The layer-3 status of one interface.
class TRAFFIC_POLICY_API Status : public Vorn::PtrInterface {
   VORN_RECORD( Status )

   explicit Status( VrfName const & vrfName )
      : vrf_( vrfName ) {}

   VORN_INPUT( VrfName, vrf ) // the VRF that the interface belongs to
};

// The layer-3 interfaces. Null, or no entry: not a layer-3 interface.
class TRAFFIC_POLICY_API StatusDir : public Vorn::PtrInterface {
   VORN_RECORD( StatusDir )

   VORN_HASHED_MAP( Pelx::IntfId, Vorn::Ptr< Status const >, intfStatus )
};

} // namespace L3::Intf
