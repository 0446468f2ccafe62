// The base of the renderers: an output format over a print buffer.

#pragma once

#include "TrafficPolicy/platform/wendo/PrintBuffer.h"

namespace wendo {

// Any other value writes nothing.
enum class OutputFormat_t : unsigned { TEXT = 1, JSON = 2 };

class Renderer {
public:
   Renderer( Renderer const & ) = delete;
   Renderer & operator=( Renderer const & ) = delete;

   OutputFormat_t outputFormat() const { return format_; }
   bool isText() const { return format_ == OutputFormat_t::TEXT; }
   bool isJson() const { return format_ == OutputFormat_t::JSON; }

   PrintBuffer & buffer() { return buffer_; }

protected:
   // The buffer stays the caller's and outlives the renderer.
   Renderer( OutputFormat_t format, PrintBuffer & buffer )
      : buffer_( buffer )
      , format_( format ) {}
   ~Renderer() = default;

private:
   PrintBuffer & buffer_;
   OutputFormat_t format_;
};

} // namespace wendo
