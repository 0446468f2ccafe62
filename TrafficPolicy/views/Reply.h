// One reply: the print buffer over the descriptor and the renderer on it.

#pragma once

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "TrafficPolicy/views/RendererV2.h"

namespace TrafficPolicyCli {

static_assert( wendo::tooMuch <= wendo::WendoBuffer::viewCapacity );

// Every view makes one on entry and closes it at its end. When an exception leaves the view, what
// was written so far still reaches the descriptor.
class Reply {
public:
   Reply( unsigned fd, unsigned format )
      : buffer_( static_cast< int >( fd ), wendo::WendoBuffer::viewCapacity, true )
      , renderer_( wendo::OutputFormat_t{ format }, buffer_ ) {}

   wendo::RendererV2 & renderer() { return renderer_; }

   void open() { renderer_.startJsonRoot(); }
   // Flushes too, so that an error of the descriptor reaches the caller.
   void close() {
      renderer_.endJsonRoot();
      buffer_.flush();
   }

private:
   wendo::WendoBuffer buffer_;
   wendo::RendererV2 renderer_;
};

} // namespace TrafficPolicyCli
