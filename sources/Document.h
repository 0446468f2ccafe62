// A document as a source: a state file, an OpenConfig document, or one of a SONiC switch.

#pragma once

#include "sources/Source.h"

#include <string_view>

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

enum class DocumentKind { stateFile, openConfig, sonic, unknown };

// Told by the names of the document's top members, those that stand in this begin of its text.
// What is no object, or has no members, is a state file.
DocumentKind kindOfDocument( std::string_view begin );

} // namespace tpcli
