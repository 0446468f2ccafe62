#include "bench/Sink.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <new>
#include <system_error>

namespace Bench {

Nanoseconds now() {
   using namespace std::chrono;
   return duration_cast< nanoseconds >( steady_clock::now().time_since_epoch() ).count();
}

namespace {

template< typename Result >
Result checked( Result result, char const * what ) {
   if ( result < 0 ) {
      throw std::system_error( errno, std::generic_category(), what );
   }
   return result;
}

class NullSink : public Sink {
public:
   NullSink() { fd_ = checked( ::open( "/dev/null", O_WRONLY | O_CLOEXEC ), "/dev/null" ); }
   ~NullSink() override { ::close( fd_ ); }
};

// Written by the reader, read by the writer.
struct Progress {
   std::atomic< uint64_t > bytes = 0;
   std::atomic< Nanoseconds > firstByte = 0;
};
static_assert( std::atomic< uint64_t >::is_always_lock_free );

[[noreturn]] void readAndDrop( int fd, Progress & progress ) {
   static char buffer[256 * 1024];
   ssize_t got = 0;
   while ( ( got = ::read( fd, buffer, sizeof buffer ) ) > 0 ) {
      if ( progress.firstByte == 0 ) {
         progress.firstByte = now();
      }
      progress.bytes += static_cast< uint64_t >( got );
   }
   ::_exit( 0 );
}

class PipeSink : public Sink {
public:
   PipeSink() {
      void * const shared = ::mmap( nullptr, sizeof( Progress ), PROT_READ | PROT_WRITE,
                                    MAP_SHARED | MAP_ANONYMOUS, -1, 0 );
      if ( shared == MAP_FAILED ) {
         throw std::system_error( errno, std::generic_category(), "mmap" );
      }
      progress_ = ::new ( shared ) Progress;
      int ends[2];
      checked( ::pipe2( ends, O_CLOEXEC ), "pipe" );
      reader_ = checked( ::fork(), "fork" );
      if ( reader_ == 0 ) {
         ::close( ends[1] );
         readAndDrop( ends[0], *progress_ );
      }
      ::close( ends[0] );
      fd_ = ends[1];
   }
   ~PipeSink() override {
      ::close( fd_ );
      ::waitpid( reader_, nullptr, 0 );
      ::munmap( progress_, sizeof( Progress ) );
   }

   void begin() override {
      before_ = progress_->bytes;
      progress_->firstByte = 0;
   }
   void drain( uint64_t bytes ) override {
      while ( progress_->bytes < before_ + bytes ) {
         ::sched_yield();
      }
   }
   Nanoseconds firstByte() const override { return progress_->firstByte; }

private:
   Progress * progress_;
   uint64_t before_ = 0;
   pid_t reader_;
};

} // namespace

std::unique_ptr< Sink > openNull() {
   return std::make_unique< NullSink >();
}

std::unique_ptr< Sink > openPipe() {
   return std::make_unique< PipeSink >();
}

} // namespace Bench
