// Text labels of match conditions and actions, and the JSON keys that go with them.

#pragma once

#include "TrafficPolicy/platform/vorn/Assert.h"
#include "TrafficPolicy/platform/wendo/JsonKey.h"
#include "TrafficPolicy/platform/wendo/PlainText.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace TrafficPolicyCli {

using wendo::PlainText;

struct CliMapEntry {
   std::string_view label;
   std::string_view jsonName;
};

// Ordered by label, made at compile time. Whatever has both a label and a key takes them from here,
// so that no key is written twice.
inline constexpr auto cliMap = [] {
   std::array map{
      CliMapEntry{ "Source prefix", "srcPrefixes" },
      CliMapEntry{ "Source prefix field-set", "srcPrefixSets" },
      CliMapEntry{ "Destination prefix", "destPrefixes" },
      CliMapEntry{ "Destination prefix field-set", "destPrefixSets" },
      CliMapEntry{ "Protocol", "protocols" },
      CliMapEntry{ "Destination port", "destPorts" },
      CliMapEntry{ "Destination port field-set", "destL4PortFieldSets" },
      CliMapEntry{ "Source port", "srcPorts" },
      CliMapEntry{ "Source port field-set", "srcL4PortFieldSets" },
      CliMapEntry{ "ICMP type", "icmpTypes" },
      CliMapEntry{ "ICMP code", "icmpCodes" },
      CliMapEntry{ "IP length", "ipLengths" },
      CliMapEntry{ "Fragment: offset", "fragmentOffsets" },
      CliMapEntry{ "DSCP", "dscps" },
      CliMapEntry{ "TTL", "ttls" },
      CliMapEntry{ "TCP flags", "tcpFlags" },
      CliMapEntry{ "Set DSCP", "setDscp" },
      CliMapEntry{ "Set Traffic Class", "setTc" },
   };
   std::sort( map.begin(), map.end(),
              []( CliMapEntry const & a, CliMapEntry const & b ) { return a.label < b.label; } );
   return map;
}();
static_assert( cliMap.size() == 18 );

// Which names single values under a label have.
enum class ValueNames { none, dscp, protocol };

// A label with its key looked up. Made at compile time wherever the label is known then; a label
// that is not in the map does not compile there, and fails an assertion elsewhere.
class CliLabel {
public:
   constexpr explicit CliLabel( std::string_view label )
      : CliLabel( label, label, "" ) {}

   // The label of the same condition by field-sets: another key under the same text.
   static constexpr CliLabel fieldSet( std::string_view label ) {
      return { label, label, " field-set" };
   }

   constexpr PlainText const & text() const { return text_; }
   constexpr wendo::JsonKey const & key() const { return key_; }
   // The text and ": ", the beginning of a line.
   constexpr PlainText const & heading() const { return heading_; }
   constexpr ValueNames names() const { return names_; }

private:
   constexpr CliLabel( std::string_view text, std::string_view label, std::string_view suffix )
      : key_( keyOf( label, suffix ) )
      , text_( text, "" )
      , heading_( text, ": " )
      , names_( text == "DSCP"       ? ValueNames::dscp
                : text == "Protocol" ? ValueNames::protocol
                                     : ValueNames::none ) {}

   static constexpr wendo::JsonKey keyOf( std::string_view label, std::string_view suffix ) {
      std::optional< std::string_view > jsonName;
      for ( CliMapEntry const & entry : cliMap ) {
         if ( entry.label.size() == label.size() + suffix.size() && entry.label.starts_with( label )
              && entry.label.ends_with( suffix ) ) {
            jsonName = entry.jsonName;
         }
      }
      VORN_ASSERT( !!jsonName && "Invalid mapping in cliMap" );
      return wendo::JsonKey( *jsonName );
   }

   wendo::JsonKey key_; // first: its lookup refuses an unknown label
   PlainText text_;
   PlainText heading_;
   ValueNames names_;
};

} // namespace TrafficPolicyCli
