#include "sources/json/InputFile.h"

#include "sources/FileError.h"
#include "sources/SystemCall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace tpcli {

namespace {

std::string nameOf( std::string const & path ) {
   return path == "-" ? "standard input" : path;
}

int open( std::string const & path ) {
   int const fd = interruptible( [&] {
      return path == "-" ? ::fcntl( STDIN_FILENO, F_DUPFD_CLOEXEC, 0 )
                         : ::open( path.c_str(), O_RDONLY | O_CLOEXEC );
   } );
   if ( fd < 0 ) {
      throw FileError( nameOf( path ), std::strerror( errno ) );
   }
   return fd;
}

// In bytes; 0 where it cannot be told.
uint64_t sizeOf( int fd ) {
   struct stat status {};
   return ::fstat( fd, &status ) == 0 && S_ISREG( status.st_mode )
             ? static_cast< uint64_t >( status.st_size )
             : 0;
}

} // namespace

InputFile::InputFile( std::string const & path, size_t step )
   : name_( nameOf( path ) )
   , file_( open( path ) )
   , step_( step )
   , buffer_( padding )
   , progress_( sizeOf( file_.get() ) )
   , largePages_( sizeOf( file_.get() ) ) {}

bool InputFile::advance( char const * keep ) {
   auto const kept = static_cast< size_t >( end() - keep );
   std::memmove( buffer_.data(), keep, kept );
   size_ = kept;
   if ( buffer_.size() < kept + step_ + padding ) {
      buffer_.resize( kept + step_ + padding );
   }
   size_t const more = read();
   size_ += more;
   std::memset( buffer_.data() + size_, 0, padding );
   progress_.add( more );
   largePages_.add( more );
   return more > 0;
}

size_t InputFile::read() {
   ssize_t const count =
      interruptible( [&] { return ::read( file_.get(), buffer_.data() + size_, step_ ); } );
   if ( count < 0 ) {
      throw FileError( name_, std::strerror( errno ) );
   }
   return static_cast< size_t >( count );
}

} // namespace tpcli
