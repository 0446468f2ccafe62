// In place of the editor, where the program is built without libedit.

#include "cli/LineInput.h"

namespace tpcli {

std::unique_ptr< LineInput > editedLines( Workspace & ) {
   return nullptr;
}

} // namespace tpcli
