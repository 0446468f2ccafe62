#include "sources/openconfig/EntryCounts.h"

#include "sources/openconfig/Members.h"
#include "sources/rules/Texts.h"

#include <algorithm>
#include <limits>

namespace tpcli {

namespace {

// Adds to a count that may not be there; it stays at its end rather than beginning anew.
void addTo( std::optional< uint64_t > & sum, std::optional< uint64_t > const & count ) {
   if ( count ) {
      uint64_t const before = sum.value_or( 0 );
      uint64_t const after = before + *count;
      sum = after < before ? std::numeric_limits< uint64_t >::max() : after;
   }
}

} // namespace

std::optional< SetType > setType( std::string_view text ) {
   static constexpr std::string_view names[setTypes] = { "ACL_IPV4", "ACL_IPV6", "ACL_L2",
                                                         "ACL_MPLS", "ACL_MIXED" };
   auto const found = std::ranges::find( names, identity( text ) );
   return found == std::end( names ) ? std::nullopt
                                     : std::optional( static_cast< SetType >( found - names ) );
}

EntryCounts::Count EntryCounts::read( JsonNode const & node, Notes & notes,
                                      EntryPlace const & place ) {
   auto const number = [&]( std::string_view name ) -> std::optional< uint64_t > {
      JsonNode const * const count = leaf( &node, name );
      if ( !count ) {
         return std::nullopt;
      }
      auto const value = parseNumber( count->text, std::numeric_limits< uint64_t >::max() );
      if ( !value || !count->isScalar() ) {
         place.note( notes, std::string( name ) + " is not understood" );
         return std::nullopt;
      }
      return value;
   };
   Count count;
   count.packets = number( "matched-packets" );
   count.octets = number( "matched-octets" );
   anyOctets_ |= count.octets.has_value();
   return count;
}

void EntryCounts::add( SetKey const & set, uint32_t sequenceId, Pelx::IntfId const & intf,
                       JsonNode const & node, Notes & notes, EntryPlace const & place ) {
   Count const count = read( node, notes, place );
   if ( count.packets || count.octets ) {
      byInterface_[set][sequenceId].push_back( { intf, count } );
   }
}

void EntryCounts::addTo( Count & sum, Count const & count ) {
   tpcli::addTo( sum.packets, count.packets );
   tpcli::addTo( sum.octets, count.octets );
}

// An interface may be met more than once, by several ids or bindings.
void EntryCounts::mergeInterfaces( std::vector< IntfCount > & counts ) {
   std::ranges::stable_sort( counts, {}, &IntfCount::intf );
   auto last = counts.begin();
   for ( auto at = counts.begin() + 1; at != counts.end(); ++at ) {
      if ( at->intf == last->intf ) {
         addTo( last->count, at->count );
      } else if ( ++last != at ) {
         *last = std::move( *at );
      }
   }
   counts.erase( last + 1, counts.end() );
}

void EntryCounts::countIs( SwitchRule & rule, SetKey const & set, uint32_t sequenceId,
                           JsonNode const & entry, Notes & notes, EntryPlace const & place ) {
   Count const stated = read( entry, notes, place );
   Count sum;
   rule.interfaces.clear();
   if ( auto const counts = byInterface_.find( set ); counts != byInterface_.end() ) {
      if ( auto const found = counts->second.find( sequenceId ); found != counts->second.end() ) {
         mergeInterfaces( found->second );
         for ( auto const & [intf, count] : found->second ) {
            addTo( sum, count );
            rule.interfaces.emplace_back( intf,
                                          PolicyMap::PacketAndByte{ count.packets.value_or( 0 ),
                                                                    count.octets.value_or( 0 ) } );
         }
      }
   }
   bool const bytes = stated.octets || sum.octets;
   bool const named = bytes || !rule.interfaces.empty();
   rule.count = named            ? SwitchRule::Count::named
                : stated.packets ? SwitchRule::Count::own
                                 : SwitchRule::Count::none;
   auto const total = [&]( auto const & value, auto const & ofInterfaces ) {
      return totalsAreSums_ || !value ? ofInterfaces.value_or( 0 ) : *value;
   };
   rule.total = { total( stated.packets, sum.packets ), total( stated.octets, sum.octets ) };
}

} // namespace tpcli
