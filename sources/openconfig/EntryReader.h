// An entry of an ACL set: what it matches and does.

#pragma once

#include "sources/NameHash.h"
#include "sources/json/JsonTree.h"
#include "sources/rules/Notes.h"
#include "sources/rules/PolicyBuilder.h"

namespace tpcli {

enum class SetType : uint8_t { ipv4, ipv6, l2, mpls, mixed };
inline constexpr size_t setTypes = 5;

// The names that "defined-sets" defines, by kind. The document outlives them.
struct DefinedSets {
   NameSet ip4Prefixes;
   NameSet ip6Prefixes;
   NameSet ports;
};
DefinedSets readDefinedSets( JsonTree const & tree, JsonNode const * node );

// Where an entry stands, for notes.
struct EntryPlace {
   std::string_view set;
   uint64_t sequenceId;

   void note( Notes & notes, std::string_view text ) const;
};

// The family of an entry's rule.
PolicyMap::ClassMapMatchOption familyOfEntry( SetType type, JsonNode const & entry );

// The conditions; a note for each that cannot be shown.
Vorn::Ptr< Classification::StructuredFilter const >
readConditions( JsonNode const & entry, PolicyMap::ClassMapMatchOption family,
                DefinedSets const & sets, EntryPlace const & place, Notes & notes );

// The rule's drop and log. True when the entry rejects packets.
bool readActions( JsonNode const & entry, SwitchRule & rule, EntryPlace const & place,
                  Notes & notes );

} // namespace tpcli
