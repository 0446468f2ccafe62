// One reply: the print buffer over the descriptor, the renderer on it, and the JSON root.

#pragma once

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace TrafficPolicyCli {

static_assert( wendo::tooMuch <= wendo::WendoBuffer::viewCapacity );

// Calls the function with a renderer for the format (1 text, 2 JSON) inside the open root, then
// ends the reply and flushes it, so that an error of the descriptor reaches the caller as
// std::system_error. When an exception leaves the function, what was written so far still reaches
// the descriptor.
template< typename Write >
void writeReply( unsigned fd, unsigned format, Write const & write ) {
   wendo::WendoBuffer buffer( static_cast< int >( fd ), wendo::WendoBuffer::viewCapacity, true );
   wendo::RendererV2 renderer( wendo::OutputFormat_t{ format }, buffer );
   renderer.startJsonRoot();
   write( renderer );
   renderer.endJsonRoot();
   buffer.flush();
}

} // namespace TrafficPolicyCli
