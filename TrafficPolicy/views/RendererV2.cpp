#include "TrafficPolicy/views/RendererV2.h"

#include <algorithm>

namespace wendo {

void RendererV2::writeAlone( Spaces spaces ) {
   for ( unsigned left = spaces.width; left > 0; ) {
      unsigned const some = std::min( left, unsigned{ wordsMax } );
      write( indentation( some ) );
      left -= some;
   }
}

} // namespace wendo
