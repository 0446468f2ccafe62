#include "TrafficPolicy/views/RendererV2.h"

namespace wendo {

void RendererV2::writeSpaces( size_t count ) {
   while ( count > 0 ) {
      size_t const piece = std::min( count, wordsMax );
      char * to = buffer().getBuffer( wordsMax );
      std::memset( to, ' ', wordsMax );
      buffer().commit( to + piece );
      count -= piece;
   }
}

} // namespace wendo
