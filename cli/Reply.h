// The way of a command's reply: its format, and where it goes.

#pragma once

#include "TrafficPolicy/views/RendererV2.h"
#include "cli/Command.h"
#include "cli/Output.h"
#include "cli/Session.h"

#include <functional>

namespace tpcli {

wendo::OutputFormat_t formatOf( Session const & session, Command const & command );

// Throws UsageError when lines of JSON are to be filtered.
OutputPath outputPath( Session const & session, Command const & command );

// Writes a reply of the program's own.
void writeReply( Session const & session, Command const & command,
                 std::function< void( wendo::RendererV2 & ) > const & write );

} // namespace tpcli
