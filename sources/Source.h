// Where records come from.

#pragma once

#include "sources/State.h"

#include <memory>
#include <string>
#include <vector>

namespace tpcli {

// The result of reading a source.
struct Reading {
   State state;
   // What the source has and the records cannot represent: a line each, with its place.
   std::vector< std::string > notes;
};

class Source {
public:
   Source() = default;
   virtual ~Source() = default;
   Source( Source const & ) = delete;
   Source & operator=( Source const & ) = delete;

   // Reads the present state. May be called again, unless the source is standard input.
   // Throws FileError, with the place; SigIntException when the user interrupts.
   virtual Reading read() = 0;

   // Where the counter store is when the user names no other place; empty: nowhere.
   virtual std::string defaultCounterStore() const = 0;
};

// The source that the argument of --state names. Opens nothing; never null.
std::unique_ptr< Source > findSource( std::string const & text );

} // namespace tpcli
