// An ACL rule of a SONiC switch: what it matches and does.

#pragma once

#include "sources/rules/Notes.h"
#include "sources/rules/PolicyBuilder.h"
#include "sources/sonic/Hashes.h"

#include <optional>

namespace tpcli {

// The family of all rules of a table of this type; nothing where each rule has its own.
std::optional< PolicyMap::ClassMapMatchOption > familyOfTable( std::string_view type );

// A rule as CONFIG_DB has it.
struct ConfiguredRule {
   SwitchRule rule; // without its name and count
   uint64_t priority = 0;
};

// Reads the fields of one rule; a note for each that cannot be shown. The table's family is that of
// familyOfTable; the place is where the rule stands.
ConfiguredRule readAclRule( Hashes::Fields const & fields,
                            std::optional< PolicyMap::ClassMapMatchOption > tableFamily,
                            std::string_view place, Notes & notes );

} // namespace tpcli
