#include "cli/CheckCommand.h"

#include "cli/Printable.h"
#include "cli/Reply.h"
#include "cli/StateCheck.h"

namespace tpcli {

Status check( Session & session, Command const & command ) {
   static constexpr wendo::JsonKey findingsKey( "findings" );
   static constexpr wendo::JsonKey placeKey( "place" );
   static constexpr wendo::JsonKey messageKey( "message" );
   session.workspace.readSource();
   StateCheck const found( session.workspace.state() );
   auto const & notes = session.workspace.notes();
   writeReply( session, command, [&]( wendo::RendererV2 & renderer ) {
      renderer.startJsonRoot();
      {
         auto const list = renderer.list( findingsKey );
         for ( auto const & [place, message] : found.findings() ) {
            if ( renderer.isText() ) {
               renderer.write( std::string_view( printable( place ) ), ": ",
                               std::string_view( printable( message ) ), '\n' );
            } else {
               auto const entry = renderer.listEntry();
               renderer._addJsonKeyValuePair( placeKey, std::string_view( place ) );
               renderer._addJsonKeyValuePair( messageKey, std::string_view( message ) );
            }
         }
         for ( std::string const & note : notes ) {
            if ( renderer.isText() ) {
               renderer.write( std::string_view( printable( note ) ), '\n' );
            } else {
               auto const entry = renderer.listEntry();
               renderer._addJsonKeyValuePair( messageKey, std::string_view( note ) );
            }
         }
      }
      renderer.endJsonRoot();
   } );
   for ( auto const & [place, message] : found.hints() ) {
      session.report.hint( std::string( place ).append( ": " ).append( message ) );
   }
   return found.findings().empty() && notes.empty() ? Status::done : Status::failed;
}

} // namespace tpcli
