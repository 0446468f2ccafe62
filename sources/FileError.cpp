#include "sources/FileError.h"

namespace tpcli {

namespace {

std::string oneLine( std::string const & file, std::string const & message,
                     FilePlace const & place ) {
   std::string text = file.empty() ? "" : file + ": ";
   if ( place.line > 0 ) {
      text += "line " + std::to_string( place.line ) + ", column " + std::to_string( place.column )
              + ": ";
   }
   if ( place.pointer ) {
      text += ( place.pointer->empty() ? "/" : *place.pointer ) + ": ";
   }
   return text + message;
}

} // namespace

FileError::FileError( std::string const & file, std::string const & message,
                      FilePlace const & place )
   : std::runtime_error( oneLine( file, message, place ) )
   , file_( file )
   , message_( message )
   , place_( place ) {}

} // namespace tpcli
