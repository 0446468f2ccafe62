// The print buffer over a file descriptor.

#pragma once

#include "TrafficPolicy/platform/wendo/PrintBuffer.h"

#include <memory>

namespace wendo {

// Short writes and EINTR are continued, a descriptor that would block is waited for. An interrupt
// that the user asked for surfaces as SigIntException at the next fill, flush or wait; any other
// error surfaces as std::system_error, once: after it nothing more is written.
class WendoBuffer : public PrintBuffer {
public:
   // Every view's buffer has this capacity.
   static constexpr size_t viewCapacity = 1'048'576;

   // The descriptor stays the caller's. With flushAtEnd the destructor writes what is left.
   WendoBuffer( int fd, size_t capacity, bool flushAtEnd );
   // Never throws: an error here can no longer be reported, so whoever wants to know of it flushes
   // first. Gives up at an interrupt.
   ~WendoBuffer() override;

   void flush() override;

protected:
   void makeRoom() override;

private:
   WendoBuffer( int fd, std::unique_ptr< char[] > memory, size_t capacity, bool flushAtEnd );
   void writeOut();

   std::unique_ptr< char[] > memory_;
   int fd_;
   bool flushAtEnd_;
   bool failed_ = false;
   bool large_ = false; // the output is longer than the buffer
};

} // namespace wendo
