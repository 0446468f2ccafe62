#include "sources/json/InputFile.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/FileDescriptor.h"
#include "sources/FileError.h"
#include "sources/Memory.h"

#include <fcntl.h>
#include <simdjson.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace tpcli {

namespace {

constexpr size_t padding = simdjson::SIMDJSON_PADDING;

[[noreturn]] void fail( std::string const & path, int error ) {
   throw FileError( path + ": " + std::strerror( error ) );
}

// Waits where the file is a pipe that nobody writes to yet; an interrupt ends the wait.
int openToRead( std::string const & path ) {
   for ( ;; ) {
      int const fd = ::open( path.c_str(), O_RDONLY | O_CLOEXEC );
      if ( fd >= 0 || errno != EINTR ) {
         return fd;
      }
      wendo::interrupt::check();
   }
}

} // namespace

void InputFile::Free::operator()( char * bytes ) const {
   std::free( bytes );
}

InputFile::InputFile( std::string const & path ) {
   if ( path == "-" ) {
      grow( 1 << 16 );
      readAll( STDIN_FILENO, "standard input" );
      return;
   }
   FileDescriptor const file( openToRead( path ) );
   struct stat status {};
   if ( file.get() < 0 || ::fstat( file.get(), &status ) < 0 ) {
      fail( path, errno );
   }
   if ( status.st_size > std::numeric_limits< int32_t >::max() / 2 && sizeof( size_t ) == 4 ) {
      fail( path, EFBIG );
   }
   // One byte more than the file has, so that its end is seen without growing.
   grow( static_cast< size_t >( status.st_size ) + padding + 1 );
   readAll( file.get(), path );
}

void InputFile::grow( size_t capacity ) {
   char * const grown = static_cast< char * >( allocateLarge( capacity ) );
   if ( !grown ) {
      throw std::bad_alloc();
   }
   std::copy_n( bytes_.get(), size_, grown );
   bytes_.reset( grown );
   capacity_ = capacity;
}

void InputFile::readAll( int fd, std::string const & path ) {
   for ( ;; ) {
      wendo::interrupt::check();
      if ( capacity_ - size_ <= padding ) {
         grow( capacity_ * 2 );
      }
      ssize_t const got = ::read( fd, bytes_.get() + size_, capacity_ - size_ - padding );
      if ( got == 0 ) {
         break;
      }
      if ( got > 0 ) {
         size_ += static_cast< size_t >( got );
      } else if ( errno != EINTR ) {
         fail( path, errno );
      }
   }
   std::memset( bytes_.get() + size_, 0, padding );
}

} // namespace tpcli
