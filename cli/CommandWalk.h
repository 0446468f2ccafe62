// One walk through the command table, word by word: the parser, and what says what may follow.

#pragma once

#include "cli/Command.h"
#include "cli/Words.h"

#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

// A word that may stand at a place.
struct Choice {
   std::string_view word;
   std::string_view help;
   Argument argument = Argument::none; // that follows it
};

// What may follow.
struct Continuation {
   std::vector< Choice > words;
   Argument argument = Argument::none; // a value may stand here, too
   std::string_view help;              // of that value
   bool complete = false;              // the command may end here
};

class CommandWalk {
public:
   // Some commands make sense only where commands are read from lines.
   explicit CommandWalk( bool lines )
      : lines_( lines ) {}

   // Takes the words in turn; throws UsageError at the first that cannot stand where it stands.
   void take( CommandText const & text );
   // The command, which must be complete. Throws UsageError.
   Command const & finish() const;

   Continuation next() const;
   // As far as it is known.
   Command const & command() const { return command_; }

private:
   enum class Place : uint8_t { path, argument, options, value, pipe, pipeText };

   // The word after it, if there is one, tells whether a | is a name or begins a pipe.
   void take( Word const & word, Word const * next );
   void takePath( Word const & word );
   void takeArgument( Word const & word );
   void takeOption( Word const & word );
   void takeValue( Word const & word );
   void takePipe( Word const & word );
   void takePipeText( Word const & word );
   void openPipe( Word const & word );

   // What may stand at the place.
   std::vector< Choice > pathWords() const;
   std::vector< Choice > optionWords() const;
   std::vector< Choice > pipeWords() const;
   // What is missing at the place; empty when the command may end there.
   std::string missing() const;

   // The only one of the choices that the word is or begins, or null.
   Choice const * select( Word const & word, std::vector< Choice > const & choices ) const;
   [[noreturn]] void refuse( Word const & word, std::vector< Choice > const & choices ) const;
   [[noreturn]] void refuseOption( Word const & word ) const;
   [[noreturn]] void fail( std::string const & problem, Word const & word ) const;

   bool lines_;
   std::string line_;
   Place place_ = Place::path;
   std::vector< std::string_view > path_;
   Option option_ = {};             // the one whose value is awaited
   PipeRow const * pipe_ = nullptr; // the last one
   Command command_;
};

// Throws UsageError.
Command parseCommand( CommandText const & text, bool lines );

} // namespace tpcli
