// `tpcli types`: what the library's classes are, as they describe themselves.

#pragma once

#include "cli/Reply.h"

#include <string_view>

namespace tpcli {

// Writes the names of all classes, one a line, or everything about the named one: base,
// constructor, and attributes, inherited ones included. The name is qualified, or its last part
// where that is enough. As JSON: one object on one line, with everything about every class when
// none is named. Throws UsageError when no class or more than one has the name.
void listTypes( wendo::RendererV2 & renderer, std::string_view name );

} // namespace tpcli
