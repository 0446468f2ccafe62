#include "bench/PlainRules.h"

#include <charconv>
#include <cstdio>
#include <fstream>
#include <optional>
#include <stdexcept>

namespace Bench {

namespace {

// The bits of the filter sets and of the records for the two known conditions.
constexpr unsigned setInitialSyn = 0x0200;
constexpr unsigned setEstablished = 0x1000;
constexpr uint16_t recordInitialSyn = 0x200;
constexpr uint16_t recordEstablished = 0x100;

constexpr uint8_t tcp = 6;
constexpr uint8_t udp = 17;

Prefix prefixOf( unsigned const ( &bytes )[4], unsigned length ) {
   uint32_t const address = bytes[0] << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
   // Some sets have host bits beyond short prefixes; a prefix record has none.
   uint32_t const mask = length == 0 ? 0 : ~uint32_t{ 0 } << ( 32 - length );
   return { address & mask, static_cast< uint8_t >( length ) };
}

std::optional< Filter > parse( char const * line ) {
   unsigned src[4] = {};
   unsigned dst[4] = {};
   unsigned srcLength = 0, dstLength = 0;
   unsigned srcLow = 0, srcHigh = 0, dstLow = 0, dstHigh = 0;
   unsigned protocol = 0, protocolMask = 0, flags = 0, flagMask = 0;
   if ( std::sscanf( line, "@%u.%u.%u.%u/%u %u.%u.%u.%u/%u %u : %u %u : %u %x/%x %x/%x", src,
                     src + 1, src + 2, src + 3, &srcLength, dst, dst + 1, dst + 2, dst + 3,
                     &dstLength, &srcLow, &srcHigh, &dstLow, &dstHigh, &protocol, &protocolMask,
                     &flags, &flagMask )
        != 18 ) {
      return std::nullopt;
   }
   Filter filter;
   filter.source = prefixOf( src, srcLength );
   filter.destination = prefixOf( dst, dstLength );
   filter.anyProtocol = protocolMask == 0;
   filter.protocol = static_cast< uint8_t >( protocol );
   if ( !filter.anyProtocol && ( protocol == tcp || protocol == udp ) ) {
      filter.sourcePorts = { static_cast< uint16_t >( srcLow ),
                             static_cast< uint16_t >( srcHigh ) };
      filter.destinationPorts = { static_cast< uint16_t >( dstLow ),
                                  static_cast< uint16_t >( dstHigh ) };
   }
   if ( !filter.anyProtocol && protocol == tcp ) {
      unsigned const bits = flags & flagMask;
      filter.tcpFlags =
         static_cast< uint16_t >( ( bits & setInitialSyn ? recordInitialSyn : 0 )
                                  | ( bits & setEstablished ? recordEstablished : 0 ) );
   }
   return filter;
}

PlainRule makeRule( Filter const & filter, uint32_t number ) {
   PlainRule rule{};
   rule.nameText[0] = 'R';
   char const * end =
      std::to_chars( rule.nameText.data() + 1, rule.nameText.data() + rule.nameText.size(), number )
         .ptr;
   rule.nameSize = static_cast< uint8_t >( end - rule.nameText.data() );
   rule.actions = static_cast< Actions >( number % 5 );
   rule.trafficClass = static_cast< uint8_t >( number % 8 );
   rule.dscp = number % 17 == 0;
   rule.filter = filter;
   rule.policeRate = 1000 + number;
   rule.packets = ( number - 1 ) * uint64_t{ 7919 } % 1'000'003;
   return rule;
}

} // namespace

std::vector< Filter > readFilters( std::string const & path ) {
   std::ifstream file( path );
   std::vector< Filter > filters;
   for ( std::string line; std::getline( file, line ); ) {
      if ( auto const filter = parse( line.c_str() ) ) {
         filters.push_back( *filter );
      }
   }
   if ( filters.empty() ) {
      throw std::runtime_error( "no filters in " + path );
   }
   return filters;
}

std::vector< PlainRule > makeRules( std::vector< Filter > const & filters, size_t count ) {
   std::vector< PlainRule > rules;
   rules.reserve( count );
   for ( size_t i = 0; i < count; ++i ) {
      rules.push_back( makeRule( filters[i % filters.size()], static_cast< uint32_t >( i + 1 ) ) );
   }
   return rules;
}

} // namespace Bench
