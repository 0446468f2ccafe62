// The cached state of one policy.

#pragma once

#include "TrafficPolicy/platform/records/ConfigRecords.h"
#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"

#include <cstdint>

namespace TrafficPolicyCli {

// Filled once per command by the caching, read by every view. The two rule arrays are kept in step:
// every rule number below ruleCount has its match condition and its status.
class PolicyState : public Vorn::PtrInterface {
   VORN_ENTITY( PolicyState, Vorn::PtrInterface )

   explicit PolicyState( Vorn::String const & policyName )
      : name_( policyName ) {}

   VORN_INPUT( Vorn::String, name )

   // The address families for which installation state is cached.
   VORN_SET( PolicyMap::ClassMapMatchOption, matchOptionList )

   // The records that the state came from; null where there is none.
   VORN_SCALAR( Vorn::Ptr< PolicyMap::PolicyMapConfig const >, policyMapConfig )
   VORN_SCALAR( Vorn::Ptr< PolicyMap::PolicyMapStatus const >, policyMapStatus )

   // The rules, by rule number: 0 to ruleCount - 1, in the order in which they match.
   VORN_ARRAY( Vorn::Ptr< PolicyMap::ClassMapMatch const >, classMapConfig )
   VORN_ARRAY( Vorn::Ptr< PolicyMap::ClassMapStatus const >, classMapStatus )
   VORN_SCALAR( uint32_t, ruleCount )
   // For walking the rules in order: their families alone, their conditions, their status.
   using Matches = Vorn::IndexedArray< Vorn::Ptr< PolicyMap::ClassMapMatch const > >;
   using Statuses = Vorn::IndexedArray< Vorn::Ptr< PolicyMap::ClassMapStatus const > >;
   using FamilyCursor = Matches::Cursor< 0 >;
   using MatchCursor = Matches::Cursor< PolicyMap::ClassMapMatch::prefetchSteps >;
   using StatusCursor = Statuses::Cursor< PolicyMap::ClassMapStatus::prefetchSteps >;
   // Adds n and returns the new count.
   uint32_t ruleCountInc( unsigned n ) {
      ruleCountIs( ruleCount() + n );
      return ruleCount();
   }

   // The command's flags.
   VORN_SCALAR( bool, summary )
   VORN_SCALAR( bool, errors )
   VORN_SCALAR( bool, detail )

   VORN_SCALAR( uint32_t, indentCountPerLevel ) // spaces per level of the text views

   VORN_SCALAR( Vorn::Ptr< TrafficPolicy::Counter const >, counter ) // the counter store, or null

   VORN_ORDERED_MAP( Vorn::String, bool, namedCounter ) // the declared counters; stored true
   VORN_SCALAR( bool, undefinedCounter ) // a rule counts into a counter that is not declared

   VORN_SCALAR( bool, byteCountersSupported ) // the hardware counts bytes beside packets
};

// The status of the policy's named counter; null where the hardware side does not have it.
Vorn::Ptr< PolicyMap::PacketDataStatus const > const &
namedCounterStatus( PolicyState const & policyState, Vorn::String const & counterName );

Vorn::Ptr< PolicyState > policyStateFactory( Vorn::String name );

} // namespace TrafficPolicyCli
