// What goes wrong, told on standard error: as text, or as one JSON object a line.

#pragma once

#include "cli/Errors.h"
#include "sources/FileError.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tpcli {

class Report {
public:
   explicit Report( bool json )
      : json_( json ) {}

   // The line of standard input that is run, from 1; 0: the command is no line of a file.
   void inputLineIs( size_t number ) { inputLine_ = number; }

   void usage( UsageError const & error ) const;
   void error( std::string_view message ) const;
   // As JSON with the file and the place in it as members, as far as they are known.
   void error( FileError const & error ) const;
   // Something that may be meant, or not; it changes no status.
   void hint( std::string_view message ) const;
   // Needs no memory.
   void outOfMemory() const noexcept;

private:
   // "line 3: " where the command is such a line.
   std::string place() const;
   std::string members( std::string_view message ) const;

   bool json_;
   size_t inputLine_ = 0;
};

} // namespace tpcli
