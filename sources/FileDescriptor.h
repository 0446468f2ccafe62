// An open file descriptor that closes itself.

#pragma once

#include <unistd.h>

namespace tpcli {

class FileDescriptor {
public:
   // Owns the descriptor, which may be invalid (negative).
   explicit FileDescriptor( int fd )
      : fd_( fd ) {}
   ~FileDescriptor() {
      if ( fd_ >= 0 ) {
         ::close( fd_ );
      }
   }
   FileDescriptor( FileDescriptor const & ) = delete;
   FileDescriptor & operator=( FileDescriptor const & ) = delete;

   int get() const { return fd_; }

private:
   int fd_;
};

} // namespace tpcli
