#include "sources/sonic/RuleReader.h"

#include "sources/rules/Conditions.h"
#include "sources/rules/Texts.h"

#include <algorithm>
#include <limits>

namespace tpcli {

namespace {

using Classification::TcpFlagAndMask;
using PolicyMap::ClassMapMatchOption;

constexpr uint64_t numberMax = std::numeric_limits< uint64_t >::max();

bool sameIgnoringCase( std::string_view a, std::string_view b ) {
   return std::ranges::equal( a, b, []( char x, char y ) {
      auto const upper = []( char c ) {
         return c >= 'a' && c <= 'z' ? static_cast< char >( c - 'a' + 'A' ) : c;
      };
      return upper( x ) == upper( y );
   } );
}

bool isOneOf( std::string_view text, std::initializer_list< std::string_view > names ) {
   return std::ranges::any_of(
      names, [&]( std::string_view name ) { return sameIgnoringCase( text, name ); } );
}

// What fields belong to: a rule of one family cannot show those of the other.
enum class Needs { any, ip, ip4, ip6 };

// Takes the fields of one rule apart.
class Reader {
public:
   Reader( Hashes::Fields const & fields, std::string_view place, Notes & notes )
      : fields_( fields )
      , place_( place )
      , notes_( notes ) {}

   ConfiguredRule read( std::optional< ClassMapMatchOption > tableFamily );

private:
   // Returns false when the value is not understood.
   using Read = bool ( Reader::* )( std::string_view value );
   struct FieldRow {
      std::string_view name;
      Needs needs;
      Read read;
   };
   static FieldRow const rows[];

   static FieldRow const * row( std::string_view name );
   ClassMapMatchOption familyOfRule() const;
   bool fits( Needs needs ) const;
   void note( std::string_view field, std::string_view what ) const {
      addNote( notes_, place_, std::string( field ).append( what ) );
   }
   void cannotShow( std::string_view field ) const { note( field, " cannot be shown" ); }

   template< auto insert >
   bool prefix( std::string_view value );
   bool protocol( std::string_view value );
   template< auto side >
   bool port( std::string_view value );
   template< auto side >
   bool portRange( std::string_view value );
   bool icmpType( std::string_view value );
   bool icmpCode( std::string_view value );
   bool dscp( std::string_view value );
   bool tcpFlags( std::string_view value );
   bool etherType( std::string_view value );
   bool ipType( std::string_view value );
   bool action( std::string_view value );
   bool priority( std::string_view value );
   bool nothing( std::string_view ) { return true; }

   Hashes::Fields const & fields_;
   std::string_view place_;
   Notes & notes_;
   std::string_view field_; // that is read

   ConfiguredRule result_;
   Conditions conditions_;
   bool hasPriority_ = false; // in upper case
};

using Filter = Classification::StructuredFilter;

constexpr Reader::FieldRow Reader::rows[] = {
   { "DSCP", Needs::ip, &Reader::dscp },
   { "DST_IP", Needs::ip4, &Reader::prefix< &Filter::destinationsIs > },
   { "DST_IPV6", Needs::ip6, &Reader::prefix< &Filter::destinationsIs > },
   { "ETHER_TYPE", Needs::any, &Reader::etherType },
   { "ICMPV6_CODE", Needs::ip6, &Reader::icmpCode },
   { "ICMPV6_TYPE", Needs::ip6, &Reader::icmpType },
   { "ICMP_CODE", Needs::ip4, &Reader::icmpCode },
   { "ICMP_TYPE", Needs::ip4, &Reader::icmpType },
   { "IP_PROTOCOL", Needs::ip, &Reader::protocol },
   { "IP_TYPE", Needs::any, &Reader::ipType },
   { "L4_DST_PORT", Needs::ip, &Reader::port< &Conditions::destination > },
   { "L4_DST_PORT_RANGE", Needs::ip, &Reader::portRange< &Conditions::destination > },
   { "L4_SRC_PORT", Needs::ip, &Reader::port< &Conditions::source > },
   { "L4_SRC_PORT_RANGE", Needs::ip, &Reader::portRange< &Conditions::source > },
   { "NEXT_HEADER", Needs::ip6, &Reader::protocol },
   { "NULL", Needs::any, &Reader::nothing },
   { "PACKET_ACTION", Needs::any, &Reader::action },
   { "PRIORITY", Needs::any, &Reader::priority },
   { "SRC_IP", Needs::ip4, &Reader::prefix< &Filter::sourcesIs > },
   { "SRC_IPV6", Needs::ip6, &Reader::prefix< &Filter::sourcesIs > },
   { "TCP_FLAGS", Needs::ip, &Reader::tcpFlags },
   { "priority", Needs::any, &Reader::priority },
};

Reader::FieldRow const * Reader::row( std::string_view name ) {
   static_assert( std::ranges::is_sorted( rows, {}, &FieldRow::name ) );
   auto const * const found = std::ranges::lower_bound( rows, name, {}, &FieldRow::name );
   return found != std::end( rows ) && found->name == name ? found : nullptr;
}

// IPv6 where anything says so.
ClassMapMatchOption Reader::familyOfRule() const {
   for ( auto const & [name, value] : fields_ ) {
      FieldRow const * const known = row( name );
      if ( ( known && known->needs == Needs::ip6 )
           || ( name == "IP_TYPE" && isOneOf( value, { "IPV6", "IPV6ANY" } ) )
           || ( name == "ETHER_TYPE" && parseNumber( value, numberMax ) == 0x86dd ) ) {
         return ClassMapMatchOption::ipv6;
      }
   }
   return ClassMapMatchOption::ipv4;
}

bool Reader::fits( Needs needs ) const {
   switch ( result_.rule.family ) {
   case ClassMapMatchOption::ipv4:
      return needs != Needs::ip6;
   case ClassMapMatchOption::ipv6:
      return needs != Needs::ip4;
   default:
      return needs == Needs::any;
   }
}

ConfiguredRule Reader::read( std::optional< ClassMapMatchOption > tableFamily ) {
   result_.rule.family = tableFamily ? *tableFamily : familyOfRule();
   for ( auto const & [name, value] : fields_ ) {
      FieldRow const * const known = row( name );
      field_ = name;
      if ( !known || !fits( known->needs ) ) {
         cannotShow( name );
      } else if ( !( this->*known->read )( value ) ) {
         note( name, " \"" + std::string( value ) + "\" is not understood" );
      }
   }
   result_.rule.filter = conditions_.finish( result_.rule.family, [&]( std::string_view what ) {
      note( what, " cannot be shown under another protocol" );
   } );
   return std::move( result_ );
}

template< auto insert >
bool Reader::prefix( std::string_view value ) {
   auto const prefix = parsePrefix( value, result_.rule.family );
   return prefix && ( ( conditions_.filter().*insert )( *prefix ), true );
}

bool Reader::protocol( std::string_view value ) {
   auto const number = parseNumber( value, 255 );
   if ( number && conditions_.protocol && *conditions_.protocol != *number ) {
      cannotShow( field_ );
   } else if ( number ) {
      conditions_.protocol = static_cast< uint8_t >( *number );
   }
   return number.has_value();
}

template< auto side >
bool Reader::port( std::string_view value ) {
   auto const number = parseNumber( value, 65535 );
   if ( number ) {
      auto const port = static_cast< uint32_t >( *number );
      ( conditions_.*side ).ranges.push_back( { { port, port } } );
   }
   return number.has_value();
}

template< auto side >
bool Reader::portRange( std::string_view value ) {
   size_t const dash = value.find( '-' );
   auto const low = parseNumber( value.substr( 0, dash ), 65535 );
   auto const high =
      dash == value.npos ? std::nullopt : parseNumber( value.substr( dash + 1 ), 65535 );
   if ( !low || !high || *low > *high ) {
      return false;
   }
   ( conditions_.*side )
      .ranges.push_back(
         { { static_cast< uint32_t >( *low ), static_cast< uint32_t >( *high ) } } );
   return true;
}

bool Reader::icmpType( std::string_view value ) {
   auto const number = parseNumber( value, 255 );
   if ( number ) {
      auto const type = static_cast< uint32_t >( *number );
      conditions_.icmpType = { { type, type } };
      conditions_.icmpBy = field_;
   }
   return number.has_value();
}

bool Reader::icmpCode( std::string_view value ) {
   auto const number = parseNumber( value, 255 );
   if ( number ) {
      auto const code = static_cast< uint32_t >( *number );
      conditions_.icmpCode = { { code, code } };
      if ( !conditions_.icmpType ) {
         conditions_.icmpType = { { 0, 255 } };
      }
      conditions_.icmpBy = field_;
   }
   return number.has_value();
}

// A number, or a value and the mask of the bits that count.
bool Reader::dscp( std::string_view value ) {
   constexpr uint32_t dscpMax = 63;
   size_t const slash = value.find( '/' );
   auto const number = parseNumber( value.substr( 0, slash ), dscpMax );
   auto const mask = slash == value.npos ? std::optional( uint64_t{ dscpMax } )
                                         : parseNumber( value.substr( slash + 1 ), 255 );
   if ( !number || !mask ) {
      return false;
   }
   for ( uint32_t dscp = 0; dscp <= dscpMax; ++dscp ) {
      if ( ( dscp & *mask ) == ( *number & *mask ) ) {
         conditions_.filter().dscpIs( { { dscp, dscp } } );
      }
   }
   return true;
}

bool Reader::tcpFlags( std::string_view value ) {
   constexpr uint64_t syn = 0x02;
   constexpr uint64_t ack = 0x10;
   constexpr uint64_t all = 0x3f;
   size_t const slash = value.find( '/' );
   auto const flags = parseNumber( value.substr( 0, slash ), 255 );
   auto const mask =
      slash == value.npos ? std::optional( all ) : parseNumber( value.substr( slash + 1 ), 255 );
   if ( !flags || !mask ) {
      return false;
   }
   bool const initialSyn =
      ( *mask & ( syn | ack ) ) == ( syn | ack ) && ( *flags & ( syn | ack ) ) == syn;
   if ( initialSyn ) {
      conditions_.tcpFlags = TcpFlagAndMask::initialSyn;
      conditions_.tcpFlagsBy = field_;
   }
   if ( !initialSyn || *mask != ( syn | ack ) ) {
      note( field_, " " + std::string( value )
                       + ( initialSyn ? " is shown as an initial SYN" : " cannot be shown" ) );
   }
   return true;
}

bool Reader::etherType( std::string_view value ) {
   auto const number = parseNumber( value, numberMax );
   auto const family = result_.rule.family;
   bool const said = ( number == 0x0800 && family == ClassMapMatchOption::ipv4 )
                     || ( number == 0x86dd && family == ClassMapMatchOption::ipv6 );
   if ( !said ) {
      note( field_, " " + std::string( value ) + " cannot be shown" );
   }
   return true;
}

bool Reader::ipType( std::string_view value ) {
   auto const family = result_.rule.family;
   bool const said =
      isOneOf( value, { "ANY", "IP" } )
      || ( sameIgnoringCase( value, "IPV4ANY" ) && family == ClassMapMatchOption::ipv4 )
      || ( sameIgnoringCase( value, "IPV6ANY" ) && family == ClassMapMatchOption::ipv6 );
   if ( !said ) {
      note( field_, " " + std::string( value ) + " cannot be shown" );
   }
   return true;
}

bool Reader::action( std::string_view value ) {
   if ( isOneOf( value, { "DROP", "DENY" } ) ) {
      result_.rule.drop = true;
   } else if ( !isOneOf( value, { "FORWARD", "ACCEPT" } ) ) {
      note( field_, " " + std::string( value ) + " cannot be shown" );
   }
   return true;
}

bool Reader::priority( std::string_view value ) {
   auto const number = parseNumber( value, numberMax );
   bool const isUpper = field_ == "PRIORITY";
   if ( number && ( isUpper || !hasPriority_ ) ) {
      result_.priority = *number;
      hasPriority_ = isUpper;
   }
   return number.has_value();
}

} // namespace

std::optional< ClassMapMatchOption > familyOfTable( std::string_view type ) {
   static constexpr std::pair< std::string_view, ClassMapMatchOption > types[] = {
      { "L3", ClassMapMatchOption::ipv4 },   { "MIRROR", ClassMapMatchOption::ipv4 },
      { "L3V6", ClassMapMatchOption::ipv6 }, { "MIRRORV6", ClassMapMatchOption::ipv6 },
      { "L2", ClassMapMatchOption::mac },
   };
   for ( auto const & [name, family] : types ) {
      if ( sameIgnoringCase( type, name ) ) {
         return family;
      }
   }
   return std::nullopt;
}

ConfiguredRule readAclRule( Hashes::Fields const & fields,
                            std::optional< ClassMapMatchOption > tableFamily,
                            std::string_view place, Notes & notes ) {
   return Reader( fields, place, notes ).read( tableFamily );
}

} // namespace tpcli
