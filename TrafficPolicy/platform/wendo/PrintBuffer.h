// The buffer that all output of a command goes through: reserve, format in place, commit.
//
//    char * to = buffer.getBuffer( Decimal::digitsMax );
//    buffer.commit( Decimal::put( to, value ) );
//
// Invariant: the bytes from the buffer's begin to writePtr are committed and not yet written;
// those from writePtr to endPtr are free.

#pragma once

#include "TrafficPolicy/platform/vorn/Assert.h"

#include <cstddef>
#include <string_view>

namespace wendo {

class PrintBuffer {
public:
   PrintBuffer( PrintBuffer const & ) = delete;
   PrintBuffer & operator=( PrintBuffer const & ) = delete;

   // Reserves at least this many bytes, which stay valid until the next call. Makes room first if
   // necessary: throws what makeRoom() throws. Asserts that the capacity suffices.
   char * getBuffer( size_t required ) {
      if ( static_cast< size_t >( endPtr - writePtr ) < required ) [[unlikely]] {
         makeRoomFor( required );
      }
#ifdef TP_CHECK_RESERVATIONS
      guardReservation( required );
#endif
      return writePtr;
   }
   // Commits what was written into the reservation, up to this end. Uncommitted bytes are dropped.
   void commit( char const * end ) {
#ifdef TP_CHECK_RESERVATIONS
      checkReservation( end );
#endif
      writePtr += end - writePtr;
   }

   // Appends text of any length, in pieces when it is longer than the buffer. Asserts that the
   // capacity is not 0.
   void append( std::string_view text );

   size_t capacity() const {
      return static_cast< size_t >( endPtr - begin_ );
   }

   // Writes out what is committed.
   virtual void flush() = 0;

protected:
   PrintBuffer( char * begin, size_t capacity )
      : writePtr( begin )
      , endPtr( begin + capacity )
      , begin_( begin ) {}
   virtual ~PrintBuffer() = default;

   // Frees room, all of it if possible; called when a reservation finds too little.
   virtual void makeRoom() = 0;

   std::string_view committed() const {
      return { begin_, static_cast< size_t >( writePtr - begin_ ) };
   }
   void discard() {
      writePtr = begin_;
   }
   // Drops the committed bytes before this rest of them.
   void keep( std::string_view rest );

private:
   void makeRoomFor( size_t required );

   // Debug builds mark the bytes after a reservation, and assert at the commit that they are
   // unchanged and that the end is within the reservation.
   void guardReservation( size_t required );
   void checkReservation( char const * end ) const;

   char * writePtr;
   char * endPtr;
   char * begin_;
   char * reservedEnd_ = nullptr; // debug builds only
};

} // namespace wendo
