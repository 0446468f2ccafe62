#include "bench/Report.h"

#include <climits>
#include <stdexcept>

namespace Bench {

Report::Report( std::string const & path ) {
   if ( path.empty() ) {
      return;
   }
   file_.open( path );
   file_
      << "word,case,sink,rules,bytes,rounds,ns,best_ns,copy_ns,reference_ns,to_copy,to_reference,"
         "first_byte_ns,release_ns,peak_bytes,allocations\n"
      << std::flush;
   if ( !file_ ) {
      throw std::runtime_error( "cannot write " + path );
   }
}

void Report::add( std::string const & name, std::string const & sink, Result const & result ) {
   if ( !file_.is_open() ) {
      return;
   }
   file_ << sizeof( void * ) * CHAR_BIT << ',' << name << ',' << sink << ',' << result.rules << ','
         << result.bytes << ',' << result.rounds << ',' << static_cast< uint64_t >( result.command )
         << ',' << static_cast< uint64_t >( result.commandBest ) << ','
         << static_cast< uint64_t >( result.copy ) << ','
         << static_cast< uint64_t >( result.reference ) << ',' << result.toCopy << ','
         << result.toReference << ',' << static_cast< uint64_t >( result.firstByte ) << ','
         << static_cast< uint64_t >( result.release ) << ',' << result.peak << ','
         << result.allocations << '\n'
         << std::flush;
}

} // namespace Bench
