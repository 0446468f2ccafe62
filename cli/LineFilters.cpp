#include "cli/LineFilters.h"

#include <algorithm>
#include <cstring>

namespace tpcli {

LineFilters::LineFilters( std::vector< LineFilter > const & filters ) {
   for ( LineFilter const & filter : filters ) {
      if ( filter.pipe == Pipe::count ) {
         counts_ = true;
      } else {
         stages_.push_back( { .filter = filter } );
      }
   }
}

void LineFilters::take( std::string_view text, std::string & passed ) {
   for ( size_t end = 0; ( end = text.find( '\n' ) ) != text.npos; text.remove_prefix( end + 1 ) ) {
      if ( held_.empty() ) {
         takeLine( text.substr( 0, end ), passed );
      } else {
         held_ += text.substr( 0, end );
         takeLine( held_, passed );
         held_.clear();
      }
   }
   held_ += text;
}

void LineFilters::end( std::string & passed ) {
   if ( !held_.empty() ) {
      takeLine( held_, passed );
   }
   if ( counts_ ) {
      passed += std::to_string( count_ ) + '\n';
   }
}

void LineFilters::takeLine( std::string_view line, std::string & passed ) {
   if ( !std::ranges::all_of( stages_, [&]( Stage & stage ) { return passes( stage, line ); } ) ) {
      return;
   }
   ++count_;
   if ( !counts_ ) {
      passed.append( line ) += '\n';
   }
}

bool LineFilters::passes( Stage & stage, std::string_view line ) {
   std::string const & text = stage.filter.text;
   // Much faster than a search of the standard library's.
   bool const found =
      stage.begun || ::memmem( line.data(), line.size(), text.data(), text.size() ) != nullptr;
   stage.begun = stage.filter.pipe == Pipe::begin && found;
   return found != ( stage.filter.pipe == Pipe::exclude );
}

} // namespace tpcli
