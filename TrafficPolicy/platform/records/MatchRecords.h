// What a rule matches: the structured filter of one address family and the records below it.
//
// Filled by an adapter and immutable while a command reads them. An empty collection, a null handle
// and a default value mean that there is no such condition. A handle in a collection is not null;
// one that is null all the same is traced and skipped.

#pragma once

#include "TrafficPolicy/platform/Export.h"
#include "TrafficPolicy/platform/records/MatchOption.h"
#include "TrafficPolicy/platform/records/Ranges.h"
#include "TrafficPolicy/platform/values/IpGenPrefix.h"
#include "TrafficPolicy/platform/vorn/Rare.h"

namespace Classification {

// The bits of the platform, not those of the TCP header (RFC 9293). Two have a meaning: an initial
// SYN and an established connection. All zero: no condition.
struct TcpFlagAndMask {
   static constexpr uint16_t initialSyn = 0x200;
   static constexpr uint16_t established = 0x100;

   uint16_t flags = 0;
   uint16_t mask = 0;

   friend bool operator==( TcpFlagAndMask const &, TcpFlagAndMask const & ) = default;
};

// The known bits by name, in the order in which the names are listed.
struct TcpFlagName {
   uint16_t bit;
   wendo::PlainText name;
};
inline constexpr TcpFlagName tcpFlagNames[] = { { TcpFlagAndMask::initialSyn, "initial-syn" },
                                                { TcpFlagAndMask::established, "established" } };

// The ICMP codes of one range of types.
class TRAFFIC_POLICY_API TypeAndCode : public Vorn::PtrInterface {
   VORN_RECORD( TypeAndCode )

   VORN_SET( IcmpCodeRange, icmpCode ) // empty: all codes of the type
};

// The rarer conditions of ProtoField.
class TRAFFIC_POLICY_API RareProtoConditions {
   VORN_PART( RareProtoConditions )

   VORN_SET( Vorn::String, sportFieldSet )
   VORN_SET( Vorn::String, dportFieldSet )
   VORN_HASHED_MAP( IcmpTypeRange, Vorn::Ptr< TypeAndCode const >, icmp )
};

// The layer-4 conditions of one protocol range. A port list and port field-sets may be combined.
class TRAFFIC_POLICY_API ProtoField : public Vorn::PtrInterface {
   VORN_RECORD( ProtoField )

   VORN_SET( PortRange, sport )
   VORN_SET( PortRange, dport )
   VORN_SCALAR( TcpFlagAndMask, tcpFlags )
   VORN_RARE( RareProtoConditions )
   VORN_RARE_SET( Vorn::String, sportFieldSet )
   VORN_RARE_SET( Vorn::String, dportFieldSet )
   VORN_RARE_HASHED_MAP( IcmpTypeRange, Vorn::Ptr< TypeAndCode const >, icmp )
};

enum class FragmentType : uint8_t { all = 0, other = 1, offset = 2 };

constexpr wendo::PlainText nameOf( FragmentType type ) {
   switch ( type ) {
   case FragmentType::all:
      return "all";
   case FragmentType::other:
      return "other";
   case FragmentType::offset:
      return "offset";
   }
   return {};
}

inline constexpr Names::EnumNames< FragmentType, 3 > fragmentTypes( nameOf );

// A condition on IP fragments.
class TRAFFIC_POLICY_API Fragment : public Vorn::PtrInterface {
   VORN_RECORD( Fragment )

   VORN_SCALAR( FragmentType, fragmentType )
   VORN_SET( FragmentOffsetRange, offset ) // used with FragmentType::offset
};

// Protocols whose own traffic, or whose neighbours' traffic, a rule can match.
enum class RoutingProtocol : uint8_t { none = 0, bgp = 1 };

constexpr wendo::PlainText nameOf( RoutingProtocol protocol ) {
   switch ( protocol ) {
   case RoutingProtocol::none:
      return {};
   case RoutingProtocol::bgp:
      return "bgp";
   }
   return {};
}

inline constexpr Names::EnumNames< RoutingProtocol, 2 > routingProtocols( nameOf );

// The rarer conditions of StructuredFilter.
class TRAFFIC_POLICY_API RareConditions {
   VORN_PART( RareConditions )

   VORN_SET( Vorn::String, srcPrefixSets )
   VORN_SET( Vorn::String, dstPrefixSets )
   VORN_SET( PacketLengthRange, length )
   VORN_SCALAR( Vorn::Ptr< Fragment const >, fragment )
   VORN_SET( DscpRange, dscp )
   VORN_SET( TtlRange, ttl )
   VORN_SCALAR( RoutingProtocol, neighborProtocol )
   VORN_SCALAR( RoutingProtocol, matchL4Protocol )
   VORN_SCALAR( bool, matchIpOptions )
};

// The conditions of a rule; a packet meets all of them. A side has either prefixes or prefix
// field-sets.
class TRAFFIC_POLICY_API StructuredFilter : public Vorn::PtrInterface {
   VORN_RECORD( StructuredFilter )

   VORN_HASHED_MAP( ProtocolRange, Vorn::Ptr< ProtoField const >, protocols )
   VORN_SET( Pelx::IpGenPrefix, sources )
   VORN_SET( Pelx::IpGenPrefix, destinations )
   VORN_RARE( RareConditions )
   VORN_RARE_SET( Vorn::String, srcPrefixSets )
   VORN_RARE_SET( Vorn::String, dstPrefixSets )
   VORN_RARE_SET( PacketLengthRange, length )
   VORN_RARE_SCALAR( Vorn::Ptr< Fragment const >, fragment )
   VORN_RARE_SET( DscpRange, dscp )
   VORN_RARE_SET( TtlRange, ttl )
   VORN_RARE_SCALAR( RoutingProtocol, neighborProtocol )
   VORN_RARE_SCALAR( RoutingProtocol, matchL4Protocol )
   VORN_RARE_SCALAR( bool, matchIpOptions )
};

} // namespace Classification

namespace PolicyMap {

// The match condition of one class in one address family.
class TRAFFIC_POLICY_API ClassMapMatch : public Vorn::PtrInterface {
   VORN_RECORD( ClassMapMatch )

   explicit ClassMapMatch( ClassMapMatchOption option )
      : matchOption_( option ) {}

   VORN_INPUT( ClassMapMatchOption, matchOption )
   // Null: there are no conditions to show.
   VORN_SCALAR( Vorn::Ptr< Classification::StructuredFilter const >, structuredFilter )

   static constexpr unsigned prefetchSteps = 2;
   void prefetch( unsigned step ) const {
      if ( !structuredFilter_ ) {
         return;
      }
      if ( step == 1 ) {
         Vorn::prefetchWhole( *structuredFilter_ );
         return;
      }
      for ( auto const & [range, field] : structuredFilter_->protocols() ) {
         if ( field ) {
            Vorn::prefetchWhole( *field );
         }
      }
   }
};

} // namespace PolicyMap
