#include "TrafficPolicy/platform/wendo/WendoBuffer.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <exception>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

namespace wendo {

namespace {

// Waits until a descriptor in non-blocking mode takes bytes again, a while at the most: a signal
// just before the wait does not end it, so the caller looks for an interrupt now and then.
void awaitWritable( int fd ) {
   pollfd request{ fd, POLLOUT, 0 };
   ::poll( &request, 1, 100 );
}

// A pipe of the usual size makes writer and reader take turns every 64 KiB. A hint: what is no
// pipe, or may not grow, stays as it is.
void widenPipe( [[maybe_unused]] int fd, [[maybe_unused]] size_t bytes ) {
#ifdef F_SETPIPE_SZ
   ::fcntl( fd, F_SETPIPE_SZ, static_cast< int >( bytes ) );
#endif
}

// The memory of the last view's buffer, for the next view: to fault in its pages afresh each time
// would cost a view of some thousand rules a tenth of its time.
constinit std::atomic< char * > spare;

} // namespace

// Not value-initialised: a page of the buffer that no output reached yet costs nothing.
BufferMemory::BufferMemory( size_t capacity )
   : begin_( capacity == WendoBuffer::viewCapacity ? spare.exchange( nullptr ) : nullptr )
   , isView_( capacity == WendoBuffer::viewCapacity ) {
   if ( !begin_ ) {
      begin_ = std::make_unique_for_overwrite< char[] >( capacity ).release();
   }
}

BufferMemory::~BufferMemory() {
   // What was spare before, or the memory of another size, ends with the pointer.
   std::unique_ptr< char[] > const ending( isView_ ? spare.exchange( begin_ ) : begin_ );
}

WendoBuffer::WendoBuffer( int fd, size_t capacity, bool flushAtEnd )
   : BufferMemory( capacity )
   , PrintBuffer( BufferMemory::begin(), capacity )
   , fd_( fd )
   , flushAtEnd_( flushAtEnd ) {}

WendoBuffer::~WendoBuffer() {
   if ( flushAtEnd_ && !failed_ ) {
      try {
         writeOut();
      } catch ( std::exception const & ) {
         failed_ = true;
      }
   }
}

void WendoBuffer::flush() {
   interrupt::check();
   writeOut();
}

void WendoBuffer::makeRoom() {
   if ( !std::exchange( large_, true ) ) {
      widenPipe( fd_, capacity() );
   }
   flush();
}

void WendoBuffer::writeOut() {
   std::string_view left = committed();
   while ( !left.empty() && !failed_ ) {
      ssize_t const written = ::write( fd_, left.data(), left.size() );
      int const error = errno;
      if ( written >= 0 ) {
         left.remove_prefix( static_cast< size_t >( written ) );
      } else if ( error == EAGAIN || error == EWOULDBLOCK ) {
         awaitWritable( fd_ );
      } else if ( error != EINTR ) {
         failed_ = true;
         throw std::system_error( error, std::generic_category(), "cannot write the output" );
      }
      // A signal during a write that had begun shows as a short write, not as an error.
      if ( interrupt::requested && !left.empty() ) {
         keep( left );
         interrupt::serve();
      }
   }
   discard();
}

} // namespace wendo
