// The framework's clock.

#pragma once

#include <chrono>

namespace Vorn {

// Wall-clock time in seconds since the epoch.
inline double currentTime() {
   using namespace std::chrono;
   return duration< double >( system_clock::now().time_since_epoch() ).count();
}

} // namespace Vorn
