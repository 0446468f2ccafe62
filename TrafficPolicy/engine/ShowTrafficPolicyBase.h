// What the two show objects have in common: inputs, options, the caching of policies and rules, and
// the way of a command through caching and view.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/records/ConfigRecords.h"
#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "TrafficPolicy/platform/vorn/Attribute.h"
#include "TrafficPolicy/platform/vorn/Inputs.h"

namespace wendo {
class RendererV2;
}

namespace TrafficPolicyCli {

class PolicyState; // the cached record of one policy

// Made for one command: built, rendered once, dropped. Keeps its inputs alive and never writes
// through them. Only the two subclasses are rendered. Used by one thread at a time.
//
// Handles are not checked at construction. A null one that a command needs fails an assertion that
// names it when the command is rendered.
class TRAFFIC_POLICY_API ShowTrafficPolicyBase : public Vorn::PtrInterface {
   VORN_ENTITY( ShowTrafficPolicyBase, Vorn::PtrInterface )

   VORN_INPUT( Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const >, config ) // not null
   VORN_INPUT( Vorn::Ptr< TrafficPolicy::Status const >, status )              // not null
   // The counter store. Null: every count is the hardware's.
   VORN_INPUT( Vorn::Ptr< TrafficPolicy::Counter const >, counter )
   VORN_INPUT( Vorn::String, policyName ) // the one policy to show; empty for all
   VORN_INPUT( bool, summary )            // rules without their details
   VORN_INPUT( bool, errors )             // installation errors in place of rules
   VORN_INPUT( bool, detail )             // name lists in full
   VORN_INPUT( bool, counters )           // the counter view
   // Counter view: named counters per interface; rule view: their bytes beside the packets.
   VORN_INPUT( bool, countersPerInterface )
   // The cache, by policy name; filled by cachePoliciesState. The records are of the side's class.
   VORN_OPAQUE_ORDERED_MAP( Vorn::String, Vorn::Ptr< PolicyState >, policyState )

   VORN_INPUT_CONSTRUCTOR( ShowTrafficPolicyBase )
   ~ShowTrafficPolicyBase() override;

   // The order of these virtual functions is the binary contract with the command layer.

   // Writes the policy view of the side.
   virtual void renderTrafficPolicy( unsigned fd, unsigned format, unsigned revision );
   // Writes the head of the counter view, before its first policy. The renderer is not null.
   virtual void renderCountPerInterface( wendo::RendererV2 * renderer );
   // Caches every policy that has a status.
   virtual void cachePoliciesState();
   // Caches one policy. One without a configuration or a status gets a record without rules.
   virtual void cachePolicyState( Vorn::String policyName );
   // Hooks of the policy caching: the policy's interface statuses, once; then installed state and
   // errors per address family. The status is not null.
   virtual void
   cacheIntfStatus( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus );
   virtual void
   cacheInstalledState( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
                        PolicyMap::ClassMapMatchOption matchOption );
   virtual void
   cacheInstallError( Vorn::Ptr< PolicyMap::PolicyMapStatus const > const & policyMapStatus,
                      PolicyMap::ClassMapMatchOption matchOption );
   // The policy's record in the cache, of the side's class. Null here.
   virtual Vorn::Ptr< PolicyState > getOrCreatePolicyState( Vorn::String policyName );

   // Caches, then writes the reply to the descriptor. Format: 1 text, 2 JSON; any other writes
   // nothing. The revision is the model revision that the command layer requests; every revision
   // has the same reply.
   // An interrupt ends the output with a line on standard output and a normal return. Other
   // exceptions pass, std::system_error when the descriptor does not take the output.
   void render( unsigned fd, unsigned format, unsigned revision );
   void renderTrafficPolicyCounters( unsigned fd, unsigned format, unsigned revision );
   // Caches the rules of one policy, whose name is the sub-configuration's. Not null.
   void cacheClassState( Vorn::Ptr< PolicyMap::PolicyMapSubConfig const > const & subConfig );

protected:
   ShowTrafficPolicyBase();
};

// The show objects' factories take the inputs in the order of their declarations.
TRAFFIC_POLICY_API Vorn::Ptr< ShowTrafficPolicyBase >
showTrafficPolicyBaseFactory( Vorn::Ptr< TrafficPolicy::TrafficPolicyConfig const > const & config,
                              Vorn::Ptr< TrafficPolicy::Status const > const & status,
                              Vorn::Ptr< TrafficPolicy::Counter const > const & counter,
                              Vorn::String policyName, bool summary, bool errors, bool detail,
                              bool counters, bool countersPerInterface );

} // namespace TrafficPolicyCli
