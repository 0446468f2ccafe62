// Where the lines of commands come from.

#pragma once

#include "cli/Workspace.h"

#include <memory>
#include <optional>
#include <string>

namespace tpcli {

class LineInput {
public:
   LineInput() = default;
   virtual ~LineInput() = default;
   LineInput( LineInput const & ) = delete;
   LineInput & operator=( LineInput const & ) = delete;

   // The next line, without its end. Nothing at the end of the input, or when an interrupt ended
   // the wait for a line of a file; at a terminal an interrupt discards the line that was begun.
   // Throws FileError.
   virtual std::optional< std::string > next() = 0;
};

// The lines of standard input as they are; with a prompt, for a terminal.
std::unique_ptr< LineInput > plainLines( bool prompt );

// Lines that the user edits at the terminal, with history, and completed from the command table and
// the workspace's state. Null where the program is built without line editing.
std::unique_ptr< LineInput > editedLines( Workspace & workspace );

} // namespace tpcli
