// Lines of standard input as they are.

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "cli/Errors.h"
#include "cli/LineInput.h"

#include <sys/types.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace tpcli {

namespace {

class PlainLines : public LineInput {
public:
   explicit PlainLines( bool prompt )
      : prompt_( prompt ) {}
   ~PlainLines() override { std::free( line_ ); }

   std::optional< std::string > next() override {
      ssize_t length = -1;
      while ( ( length = read() ) < 0 ) {
         if ( errno == ENOMEM ) {
            throw std::bad_alloc();
         }
         if ( std::feof( stdin ) == 0 && !wendo::interrupt::requested ) {
            throw FileError( "standard input", std::strerror( errno ) );
         }
         if ( prompt_ ) {
            std::fputs( "\n", stdout );
         }
         if ( std::feof( stdin ) != 0 || !prompt_ ) {
            return std::nullopt;
         }
         wendo::interrupt::requested = false;
         std::clearerr( stdin );
      }
      std::string text( line_, static_cast< size_t >( length ) );
      if ( text.ends_with( '\n' ) ) {
         text.pop_back();
      }
      return text;
   }

private:
   ssize_t read() {
      if ( prompt_ ) {
         std::fputs( "tpcli> ", stdout );
         std::fflush( stdout );
      }
      errno = 0;
      return ::getline( &line_, &room_, stdin );
   }

   bool prompt_;
   char * line_ = nullptr;
   size_t room_ = 0;
};

} // namespace

std::unique_ptr< LineInput > plainLines( bool prompt ) {
   return std::make_unique< PlainLines >( prompt );
}

} // namespace tpcli
