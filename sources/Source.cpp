#include "sources/Source.h"

#include "sources/Document.h"
#include "sources/FileError.h"
#ifdef TP_SONIC
#include "sources/sonic/SonicSwitch.h"
#endif

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tpcli {

namespace {

template< typename Kind >
std::unique_ptr< Source > make( std::string const & text ) {
   return std::make_unique< Kind >( text );
}

std::unique_ptr< Source > makeSwitch( std::string const & text ) {
#ifdef TP_SONIC
   return make< SonicSwitch >( text );
#else
   throw FileError( text, "this program was built without reading databases" );
#endif
}

// The kinds of sources by prefix of the text; the first match is taken, and the last matches any.
constexpr struct {
   std::string_view begin;
   std::unique_ptr< Source > ( *make )( std::string const & text );
} kinds[] = { { "sonic:", makeSwitch }, { "", make< Document > } };
static_assert( std::end( kinds )[-1].begin.empty() );

} // namespace

std::unique_ptr< Source > findSource( std::string const & text ) {
   return std::find_if( std::begin( kinds ), std::end( kinds ),
                        [&]( auto const & kind ) { return text.starts_with( kind.begin ); } )
      ->make( text );
}

} // namespace tpcli
