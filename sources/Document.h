// A document as a source: a state file, an OpenConfig document, or one of a SONiC switch.

#pragma once

#include "sources/Source.h"

#include <string>

namespace tpcli {

class Document : public Source {
public:
   // "-" is standard input.
   explicit Document( std::string path )
      : path_( std::move( path ) ) {}

   // A state file has no notes: what the records cannot hold is an error there.
   Reading read() override;
   // Beside the file; nowhere for standard input.
   std::string defaultCounterStore() const override;

private:
   std::string path_;
};

} // namespace tpcli
