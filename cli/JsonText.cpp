#include "cli/JsonText.h"

#include "TrafficPolicy/platform/wendo/JsonEscape.h"

#include <array>

namespace tpcli {

namespace {

// A print buffer that empties into a string.
class StringBuffer
   : private std::array< char, 64 >
   , public wendo::PrintBuffer {
public:
   explicit StringBuffer( std::string & text )
      : PrintBuffer( std::array< char, 64 >::data(), std::array< char, 64 >::size() )
      , text_( text ) {}

   void flush() override {
      text_ += committed();
      discard();
   }

protected:
   void makeRoom() override { flush(); }

private:
   std::string & text_;
};

} // namespace

std::string jsonText( std::string_view text ) {
   std::string result( 1, '"' );
   StringBuffer buffer( result );
   wendo::appendEscaped( buffer, text );
   buffer.flush();
   return result += '"';
}

} // namespace tpcli
