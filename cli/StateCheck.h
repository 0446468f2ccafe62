// Looking through a state for what does not fit together.

#pragma once

#include "sources/State.h"

#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

struct Finding {
   std::string place; // such as "policy P, rule R"
   std::string message;
};

class StateCheck {
public:
   // The state is the caller's and outlives this. Throws SigIntException when the user interrupts.
   explicit StateCheck( State const & state );

   // What is inconsistent or shown nowhere.
   std::vector< Finding > const & findings() const { return findings_; }
   // What may be meant otherwise.
   std::vector< Finding > const & hints() const { return hints_; }

private:
   void checkPolicies();
   void checkRules( Vorn::String const & policy, PolicyMap::PolicyMapSubConfig const & config,
                    PolicyMap::PolicyMapStatus const * status );
   void checkRule( Vorn::String const & policy, Vorn::String const & rule,
                   PolicyMap::PolicyMapSubConfig const & config,
                   PolicyMap::ClassMapStatus const * status );
   void checkCounters( Vorn::String const & policy, PolicyMap::PolicyMapSubConfig const & config,
                       PolicyMap::PolicyMapStatus const & status );
   void checkMatch( std::string const & place, PolicyMap::ClassMapSubConfig const & match );
   void checkShown( std::string const & place, Classification::StructuredFilter const & filter );
   void checkBindings();
   void checkMembership();

   void find( std::string place, std::string message );

   State const & state_;
   std::vector< Finding > findings_;
   std::vector< Finding > hints_;
};

} // namespace tpcli
