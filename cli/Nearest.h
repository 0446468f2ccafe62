// The names that a misspelt one may have meant.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

// Offered names one by one, keeps those that differ least: by characters added, left out, changed
// or swapped with their neighbours, at most a third of them.
class Nearest {
public:
   // The name is the caller's and outlives this.
   explicit Nearest( std::string_view name );

   void offer( std::string_view candidate );
   // "; did you mean A or B?", empty where nothing is near.
   std::string suggestion() const;

private:
   size_t distanceTo( std::string_view candidate );

   std::string_view name_;
   size_t limit_; // a candidate further away is of no interest
   std::vector< std::string > found_;
   std::vector< size_t > rows_[3]; // of the table of distances
};

} // namespace tpcli
