#include "cli/Time.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace tpcli {

double currentTime() {
   using Seconds = std::chrono::duration< double >;
   return Seconds( std::chrono::system_clock::now().time_since_epoch() ).count();
}

std::string numberText( double seconds ) {
   std::array< char, 64 > text{};
   auto const end =
      std::to_chars( text.data(), text.data() + text.size(), seconds, std::chars_format::fixed );
   return { text.data(), end.ptr };
}

std::string utcText( double seconds ) {
   auto const time = static_cast< std::time_t >( seconds );
   std::tm parts{};
   std::array< char, 64 > text{};
   if ( !::gmtime_r( &time, &parts )
        || std::strftime( text.data(), text.size(), "%F %T UTC", &parts ) == 0 ) {
      return "an unknown time";
   }
   return text.data();
}

std::string spanText( double seconds ) {
   auto const whole = static_cast< long long >( std::max( seconds, 0.0 ) );
   long long const days = whole / 86400;
   std::array< char, 64 > text{};
   std::snprintf( text.data(), text.size(), "%02lld:%02lld:%02lld", whole / 3600 % 24,
                  whole / 60 % 60, whole % 60 );
   return ( days == 0 ? "" : std::to_string( days ) + ( days == 1 ? " day " : " days " ) )
          + text.data();
}

void waitFor( double seconds ) {
   using Clock = std::chrono::steady_clock;
   constexpr std::chrono::milliseconds slice( 100 );
   auto const end =
      Clock::now()
      + std::chrono::duration_cast< Clock::duration >( std::chrono::duration< double >( seconds ) );
   // In slices: a signal just before a wait does not end it.
   for ( auto now = Clock::now(); now < end; now = Clock::now() ) {
      wendo::interrupt::check();
      auto const left = std::chrono::ceil< std::chrono::milliseconds >( end - now );
      ::poll( nullptr, 0, static_cast< int >( std::min( left, slice ).count() ) );
   }
   wendo::interrupt::check();
}

} // namespace tpcli
