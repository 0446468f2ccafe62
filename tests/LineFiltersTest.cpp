// Filters of lines, in pieces of any size.

#include "cli/LineFilters.h"

#include "tests/Support.h"

#include <gmock/gmock.h>

namespace {

using tpcli::LineFilter;
using tpcli::Pipe;

std::vector< std::string > linesOf( std::string const & text ) {
   std::vector< std::string > lines;
   std::istringstream in( text );
   for ( std::string line; std::getline( in, line ); ) {
      lines.push_back( line );
   }
   return lines;
}

// What passes, filter by filter over whole lists.
std::string passedOf( std::vector< std::string > lines,
                      std::vector< LineFilter > const & filters ) {
   for ( LineFilter const & filter : filters ) {
      auto const has = [&]( std::string const & line ) {
         return line.find( filter.text ) != line.npos;
      };
      if ( filter.pipe == Pipe::count ) {
         return std::to_string( lines.size() ) + '\n';
      }
      if ( filter.pipe == Pipe::begin ) {
         lines.erase( lines.begin(), std::ranges::find_if( lines, has ) );
      } else {
         std::erase_if( lines, [&]( auto const & line ) {
            return has( line ) == ( filter.pipe == Pipe::exclude );
         } );
      }
   }
   std::string result;
   for ( std::string const & line : lines ) {
      result += line + '\n';
   }
   return result;
}

TEST( LineFilters, TakePiecesOfAnySize ) {
   test::Random random( 3 );
   for ( unsigned i = 0; i < 3000; ++i ) {
      std::string text;
      for ( unsigned left = random.below( 60 ); left > 0; --left ) {
         text += "abc\n\n"[random.below( 5 )];
      }
      std::vector< LineFilter > filters( random.below( 4 ) );
      for ( LineFilter & filter : filters ) {
         filter = { Pipe{ static_cast< uint8_t >( random.below( 3 ) ) },
                    std::string( 1 + random.below( 2 ), "abc"[random.below( 3 )] ) };
      }
      if ( random.oneIn( 4 ) ) {
         filters.push_back( { Pipe::count, {} } );
      }
      tpcli::LineFilters lineFilters( filters );
      std::string passed;
      for ( size_t at = 0; at < text.size(); ) {
         size_t const size = 1 + random.below( 9 );
         lineFilters.take( std::string_view( text ).substr( at, size ), passed );
         at += size;
      }
      lineFilters.end( passed );
      ASSERT_EQ( passed, passedOf( linesOf( text ), filters ) ) << text;
   }
}

} // namespace
