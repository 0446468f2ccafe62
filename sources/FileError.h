// The error of reading or writing a file.

#pragma once

#include <stdexcept>

namespace tpcli {

// A file that cannot be read, understood or written. The text names the file and the place in it.
class FileError : public std::runtime_error {
   using std::runtime_error::runtime_error;
};

} // namespace tpcli
