// A state file as a source.

#pragma once

#include "sources/Source.h"

namespace tpcli {

class StateFile : public Source {
public:
   // "-" is standard input.
   explicit StateFile( std::string path )
      : path_( std::move( path ) ) {}

   // There are no notes: what the records cannot hold is an error of the file.
   Reading read() override;
   // Beside the file; nowhere for standard input.
   std::string defaultCounterStore() const override;

private:
   std::string path_;
};

} // namespace tpcli
