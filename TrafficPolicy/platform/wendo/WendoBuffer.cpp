#include "TrafficPolicy/platform/wendo/WendoBuffer.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"

#include <atomic>
#include <exception>
#include <memory>
#include <string_view>
#include <utility>

namespace wendo {

namespace {

// The memory of the last view's buffer, for the next view: faulting in its pages each time would
// cost a view of some thousand rules a tenth of its time.
constinit std::atomic< char * > spare;

} // namespace

// Not value-initialised: a page of the buffer that no output has reached costs nothing.
BufferMemory::BufferMemory( size_t capacity )
   : begin_( capacity == WendoBuffer::viewCapacity ? spare.exchange( nullptr ) : nullptr )
   , isView_( capacity == WendoBuffer::viewCapacity ) {
   if ( !begin_ ) {
      begin_ = std::make_unique_for_overwrite< char[] >( capacity ).release();
   }
}

BufferMemory::~BufferMemory() {
   // Frees the former spare memory, or the memory of a buffer of another size.
   std::unique_ptr< char[] > const ending( isView_ ? spare.exchange( begin_ ) : begin_ );
}

WendoBuffer::WendoBuffer( int fd, size_t capacity, bool flushAtEnd )
   : BufferMemory( capacity )
   , PrintBuffer( BufferMemory::begin(), capacity )
   , descriptor_( fd )
   , servedBefore_( interrupt::served() )
   , flushAtEnd_( flushAtEnd ) {}

WendoBuffer::~WendoBuffer() {
   if ( !flushAtEnd_ || failed_ ) {
      return;
   }
   try {
      if ( interrupted() ) {
         std::string_view left = committed();
         while ( size_t const taken = descriptor_.write( left ) ) {
            left.remove_prefix( taken );
         }
      } else {
         writeOut();
      }
   } catch ( std::exception const & ) {
      failed_ = true;
   }
}

bool WendoBuffer::interrupted() const {
   return interrupt::served() != servedBefore_;
}

void WendoBuffer::flush() {
   interrupt::check();
   writeOut();
}

void WendoBuffer::makeRoom() {
   if ( !std::exchange( large_, true ) ) {
      descriptor_.widen( capacity() );
   }
   flush();
}

void WendoBuffer::writeOut() {
   std::string_view left = committed();
   while ( !left.empty() && !failed_ ) {
      size_t taken = 0;
      try {
         taken = descriptor_.write( left );
      } catch ( std::exception const & ) {
         failed_ = true;
         throw;
      }
      left.remove_prefix( taken );
      if ( taken == 0 && !interrupt::requested ) {
         descriptor_.await();
      }
      if ( interrupt::requested && !left.empty() ) {
         keep( left );
         interrupt::serve();
      }
   }
   discard();
}

} // namespace wendo
