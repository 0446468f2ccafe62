// What stops a command, besides an interrupt.

#pragma once

#include "sources/FileError.h"

#include <cstddef>
#include <stdexcept>
#include <string>

namespace tpcli {

// A command line that asks for nothing the program has.
class UsageError : public std::runtime_error {
public:
   using std::runtime_error::runtime_error;
   // The bytes of the line from begin to end are what is wrong; an empty range is where something
   // is missing.
   UsageError( std::string const & problem, std::string line, size_t begin, size_t end )
      : std::runtime_error( problem )
      , line_( std::move( line ) )
      , begin_( begin )
      , end_( end ) {}

   // The command line, empty where no place in one is to blame.
   std::string const & line() const { return line_; }
   size_t begin() const { return begin_; }
   size_t end() const { return end_; }

private:
   std::string line_;
   size_t begin_ = 0;
   size_t end_ = 0;
};

} // namespace tpcli
