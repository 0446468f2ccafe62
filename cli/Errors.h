// What stops a command, besides an interrupt.

#pragma once

#include <stdexcept>

namespace tpcli {

// A file that cannot be read, understood or written. The text names the file and the place in it.
class FileError : public std::runtime_error {
   using std::runtime_error::runtime_error;
};

// A command line that asks for nothing the program has.
class UsageError : public std::runtime_error {
   using std::runtime_error::runtime_error;
};

} // namespace tpcli
