// What stops a command, besides an interrupt.

#pragma once

#include "sources/FileError.h"

#include <stdexcept>

namespace tpcli {

// A command line that asks for nothing the program has.
class UsageError : public std::runtime_error {
   using std::runtime_error::runtime_error;
};

} // namespace tpcli
