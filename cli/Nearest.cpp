#include "cli/Nearest.h"

#include <algorithm>
#include <numeric>

namespace tpcli {

namespace {

constexpr size_t namesMax = 3;
// Longer ones are hardly typed.
constexpr size_t lengthMax = 100;

// Letters of the other case are nearly the same.
bool isNearly( char a, char b ) {
   auto const lower = []( char c ) {
      return c >= 'A' && c <= 'Z' ? static_cast< char >( c - 'A' + 'a' ) : c;
   };
   return lower( a ) == lower( b );
}

} // namespace

Nearest::Nearest( std::string_view name )
   : name_( name )
   , limit_( name.size() <= lengthMax ? std::max( name.size() / 3, size_t{ 1 } ) : 0 ) {}

void Nearest::offer( std::string_view candidate ) {
   size_t const longer = std::max( candidate.size(), name_.size() );
   if ( longer - std::min( candidate.size(), name_.size() ) > limit_ || name_.empty() ) {
      return;
   }
   size_t const distance = distanceTo( candidate );
   if ( distance > limit_ || distance >= longer ) {
      return;
   }
   if ( distance < limit_ ) {
      found_.clear();
      limit_ = distance;
   }
   if ( found_.size() < namesMax && std::ranges::find( found_, candidate ) == found_.end() ) {
      found_.emplace_back( candidate );
   }
}

size_t Nearest::distanceTo( std::string_view candidate ) {
   auto & [before, last, now] = rows_;
   last.resize( candidate.size() + 1 );
   std::iota( last.begin(), last.end(), size_t{ 0 } );
   before = last;
   now.resize( last.size() );
   for ( size_t i = 0; i < name_.size(); ++i ) {
      now[0] = i + 1;
      for ( size_t j = 0; j < candidate.size(); ++j ) {
         size_t const changed = last[j] + ( isNearly( name_[i], candidate[j] ) ? 0 : 1 );
         now[j + 1] = std::min( { changed, last[j + 1] + 1, now[j] + 1 } );
         bool const swapped =
            i > 0 && j > 0 && name_[i] == candidate[j - 1] && name_[i - 1] == candidate[j];
         if ( swapped ) {
            now[j + 1] = std::min( now[j + 1], before[j - 1] + 1 );
         }
      }
      before.swap( last );
      last.swap( now );
   }
   return last.back();
}

std::string Nearest::suggestion() const {
   std::string text;
   for ( std::string const & name : found_ ) {
      text += text.empty() ? "; did you mean " : name == found_.back() ? " or " : ", ";
      text += name;
   }
   return text.empty() ? text : text + '?';
}

} // namespace tpcli
