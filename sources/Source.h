// Where records come from.

#pragma once

#include "sources/State.h"

#include <memory>
#include <string>
#include <vector>

namespace tpcli {

// What a source gives.
struct Reading {
   State state;
   // What the source says and the records cannot hold: a line each, with its place.
   std::vector< std::string > notes;
};

class Source {
public:
   Source() = default;
   virtual ~Source() = default;
   Source( Source const & ) = delete;
   Source & operator=( Source const & ) = delete;

   // Everything that the source says now. May be called again, unless the source is standard input.
   // Throws FileError, with the place; SigIntException when the user interrupts.
   virtual Reading read() = 0;

   // Where the counter store is when the user names no other place; empty: nowhere.
   virtual std::string defaultCounterStore() const = 0;
};

// The source that the text after --state stands for. Nothing is opened yet.
std::unique_ptr< Source > findSource( std::string const & text );

} // namespace tpcli
