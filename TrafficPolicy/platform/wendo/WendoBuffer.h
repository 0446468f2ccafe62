// The print buffer over a file descriptor.

#pragma once

#include "TrafficPolicy/platform/wendo/Descriptor.h"
#include "TrafficPolicy/platform/wendo/PrintBuffer.h"

#include <cstddef>

namespace wendo {

// The memory of a buffer: a base, so that it exists before the buffer over it. That of a view's
// buffer is kept for the next view: a process that has rendered once keeps a mebibyte.
class BufferMemory {
public:
   BufferMemory( BufferMemory const & ) = delete;
   BufferMemory & operator=( BufferMemory const & ) = delete;

protected:
   explicit BufferMemory( size_t capacity );
   ~BufferMemory();
   char * begin() const { return begin_; }

private:
   char * begin_;
   bool isView_;
};

// Continues short writes and EINTR, and waits for a descriptor that takes nothing. A requested
// interrupt surfaces as SigIntException at the next fill, flush or wait; any other error surfaces
// as std::system_error, once: after it nothing more is written.
class WendoBuffer
   : private BufferMemory
   , public PrintBuffer {
public:
   // The capacity of every view's buffer, in bytes.
   static constexpr size_t viewCapacity = 1'048'576;

   // The descriptor stays the caller's. With flushAtEnd the destructor writes what is left.
   WendoBuffer( int fd, size_t capacity, bool flushAtEnd );
   // Never throws: errors are lost here, so a caller that needs them flushes first. After an
   // interrupt it hands over what the descriptor takes at once and drops the rest.
   ~WendoBuffer() override;

   void flush() override;

protected:
   void makeRoom() override;

private:
   void writeOut();
   // An interrupt was served since the buffer was made.
   bool interrupted() const;

   Descriptor descriptor_;
   unsigned servedBefore_;
   bool flushAtEnd_;
   bool failed_ = false;
   bool large_ = false; // the output is longer than the buffer
};

} // namespace wendo
