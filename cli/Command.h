// A command as it was understood.

#pragma once

#include "cli/CommandTable.h"

#include <array>
#include <string>
#include <vector>

namespace tpcli {

// A filter of the lines of a reply.
struct LineFilter {
   Pipe pipe = Pipe::include;
   std::string text;
};

struct Command {
   CommandRow const * row = nullptr;     // of a command that was understood: not null
   std::vector< std::string > arguments; // of the command itself; names as they stand
   OptionSet options;
   std::array< std::string, optionCount > values; // of the options that take one
   bool json = false;                             // | json
   std::vector< LineFilter > filters;             // in turn; the last may count

   bool has( Option option ) const { return options.has( option ); }
   // Empty where the option was not given.
   std::string const & value( Option option ) const {
      return values[static_cast< size_t >( option )];
   }
   // The command's only argument, empty where none was given.
   std::string argument() const { return arguments.empty() ? "" : arguments.front(); }
};

} // namespace tpcli
