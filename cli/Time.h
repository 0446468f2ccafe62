// Times of the clock, and waiting.

#pragma once

#include <string>

namespace tpcli {

// In seconds since 1970.
double currentTime();
// The shortest digits for it, without an exponent.
std::string numberText( double seconds );
// As "2026-11-21 18:20:00 UTC".
std::string utcText( double seconds );
// A time span as "3 days 04:05:06".
std::string spanText( double seconds );

// Throws SigIntException when the user interrupts.
void waitFor( double seconds );

} // namespace tpcli
