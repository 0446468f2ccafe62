// A process of our own that a command's output goes through.

#pragma once

#include <sys/types.h>

#include <functional>

namespace tpcli {

// Its standard input is a pipe that we write to.
class Child {
public:
   // What the process does with the pipe's end; returns its exit status.
   using Body = std::function< int( int input ) >;

   // Interrupts do not reach it, unless it lets them. Throws std::system_error.
   explicit Child( Body const & body );
   // Ends it at once, unless it was waited for.
   ~Child();
   Child( Child const & ) = delete;
   Child & operator=( Child const & ) = delete;

   // To write to.
   int fd() const { return fd_; }
   void closeInput();
   // Closes its input, waits for its end and returns its exit status.
   int wait();
   // The same, but an interrupt ends the wait with SigIntException.
   int waitInterruptibly();

private:
   int fd_ = -1;
   int alive_ = -1; // a pipe whose other end closes with the process
   pid_t process_ = -1;
};

} // namespace tpcli
