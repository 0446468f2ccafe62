#include "cli/Reply.h"

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "cli/Errors.h"

namespace tpcli {

wendo::OutputFormat_t formatOf( Session const & session, Command const & command ) {
   return command.json || session.options.json ? wendo::OutputFormat_t::JSON
                                               : wendo::OutputFormat_t::TEXT;
}

OutputPath outputPath( Session const & session, Command const & command ) {
   if ( !command.filters.empty() && formatOf( session, command ) == wendo::OutputFormat_t::JSON ) {
      throw UsageError( "filters of lines take text, not JSON" );
   }
   return { .filters = command.filters, .head = {}, .tail = {}, .pager = session.options.pager };
}

void writeReply( Session const & session, Command const & command,
                 std::function< void( wendo::RendererV2 & ) > const & write ) {
   writeOutput( outputPath( session, command ), [&]( int fd ) {
      wendo::WendoBuffer buffer( fd, wendo::WendoBuffer::viewCapacity, false );
      wendo::RendererV2 renderer( formatOf( session, command ), buffer );
      write( renderer );
      buffer.flush();
   } );
}

} // namespace tpcli
