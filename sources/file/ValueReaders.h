// Values that appear in several places of the files: ranges, prefixes, names, families, counts.

#pragma once

#include "TrafficPolicy/platform/records/CounterRecords.h"
#include "TrafficPolicy/platform/records/MatchOption.h"
#include "TrafficPolicy/platform/records/Ranges.h"
#include "TrafficPolicy/platform/values/IpGenPrefix.h"
#include "TrafficPolicy/platform/values/NameTables.h"
#include "TrafficPolicy/platform/values/VrfName.h"
#include "sources/json/JsonReader.h"

#include <string>
#include <string_view>
#include <utility>

namespace tpcli {

// Numbers of one kind.
struct NumberKind {
   std::string_view what; // in errors: "a port"
   uint32_t maximum;
   // The names that numbers have, empty for one without; null: none has.
   wendo::PlainText const & ( *nameOf )( uint32_t number ) = nullptr;
};
inline constexpr NumberKind dscpValues{ "a DSCP value", 63, Names::dscp };

// A number, or its name.
uint32_t readNumber( JsonValue & value, NumberKind const & kind );

// A number, a pair of low and high, or such a pair as text: 80, [80, 90], "80-90".
Classification::NumericalRange readBounds( JsonValue & value, NumberKind const & kind );

template< typename Range >
Range readRange( JsonValue & value, NumberKind const & kind ) {
   Range range;
   static_cast< Classification::NumericalRange & >( range ) = readBounds( value, kind );
   return range;
}

// An address, "/" and a length; without these, the whole address. IPv4 or IPv6 as the rule's
// family; other families take both. Fails when bits beyond the length are set.
Pelx::IpGenPrefix readPrefix( JsonValue & value, PolicyMap::ClassMapMatchOption family );

L3::VrfName readVrf( JsonValue & value );
L3::VrfName vrfOf( std::string_view name, JsonValue const & place );

// The family with this name; fails at the place when there is none.
PolicyMap::ClassMapMatchOption familyOf( std::string_view name, JsonValue const & place );

Umbo::UniqueId readUniqueId( JsonValue & value );

// The members that every count has, all optional: its incarnation, packets and bytes.
struct Counts {
   Umbo::UniqueId id;
   PolicyMap::PacketAndByte count;
};

// An object of counts, with the members given beside them.
template< typename... Actions >
Counts readCounts( JsonValue & value, Member< Actions > const &... others ) {
   Counts counts;
   value.object(
      optional( "counterId", [&]( JsonValue & v ) { counts.id = readUniqueId( v ); } ),
      optional( "packets", [&]( JsonValue & v ) { counts.count.packets = v.number( "a count" ); } ),
      optional( "bytes", [&]( JsonValue & v ) { counts.count.bytes = v.number( "a count" ); } ),
      others... );
   return counts;
}

// A value by its name in a table of values and names.
template< typename Table >
auto readNamed( JsonValue & value, Table const & table ) {
   std::string_view const text = value.string();
   std::string choices;
   for ( auto const & [meaning, name] : table ) {
      if ( name.view() == text ) {
         return meaning;
      }
      choices += ( choices.empty() ? "" : ", " ) + quoted( name.view() );
   }
   value.fail( quoted( text ) + " is not one of " + choices );
}

// One of the offered values of an enumeration, by its name. An error lists them in this order.
template< typename Enum, size_t count, typename... Offered >
Enum readEnum( JsonValue & value, Names::EnumNames< Enum, count > const & names,
               Offered... offered ) {
   std::pair< Enum, wendo::PlainText const & > const table[] = { { offered, names[offered] }... };
   return readNamed( value, table );
}

} // namespace tpcli
