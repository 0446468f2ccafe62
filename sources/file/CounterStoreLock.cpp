// Finding and locking a counter store.

#include "sources/FileError.h"
#include "sources/SystemCall.h"
#include "sources/file/CounterStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

namespace tpcli {

namespace {

using std::filesystem::path;

[[noreturn]] void fail( std::string const & file, int error ) {
   throw FileError( file, std::string( "cannot write: " ) + std::strerror( error ) );
}

// Where the links end, so that replacing the file keeps them, whether or not it is there.
std::string resolved( std::string const & name ) {
   path place = name;
   for ( int links = 0; links < 40; ++links ) {
      std::unique_ptr< char, decltype( &std::free ) > const real(
         ::realpath( place.c_str(), nullptr ), &std::free );
      if ( real ) {
         return real.get();
      }
      if ( errno != ENOENT ) {
         fail( name, errno );
      }
      std::error_code error;
      path const target = std::filesystem::read_symlink( place, error );
      if ( error == std::errc::no_such_file_or_directory || error == std::errc::invalid_argument ) {
         return place;
      }
      if ( error ) {
         fail( name, error.value() );
      }
      place = place.parent_path() / target;
   }
   fail( name, ELOOP );
}

int openFolder( path const & folder ) {
   return retried( [&] {
      return ::open( folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC );
   } );
}

bool lock( int fd ) {
   return interruptible( [&] { return ::flock( fd, LOCK_EX ); } ) == 0;
}

// Whoever may write to the folder may lock. Returns a negative number on error.
int openLockFile( int folder, std::string const & name ) {
   constexpr int flags = O_RDWR | O_NOFOLLOW | O_CLOEXEC;
   for ( ;; ) {
      int fd = ::openat( folder, name.c_str(), flags );
      if ( fd >= 0 || errno != ENOENT ) {
         return fd;
      }
      fd = ::openat( folder, name.c_str(), flags | O_CREAT | O_EXCL, 0600 );
      if ( struct stat status{}; fd >= 0 && ::fstat( folder, &status ) == 0 ) {
         // It locks, whatever its mode.
         static_cast< void >( ::fchmod( fd, status.st_mode & 0666 ) );
      }
      if ( fd >= 0 || errno != EEXIST ) {
         return fd;
      }
   }
}

} // namespace

CounterStoreLock::CounterStoreLock( std::string const & name )
   : path_( resolved( name ) )
   , folder_( openFolder( path( path_ ).parent_path() ) ) {
   if ( folder_.get() < 0 ) {
      fail( name, errno );
   }
   if ( lock( folder_.get() ) ) {
      return;
   }
   if ( errno != EBADF ) {
      throw FileError( name, std::string( "cannot lock its folder: " ) + std::strerror( errno ) );
   }
   std::string const lockName = path( path_ ).filename().string() + ".lock";
   lockFile_.emplace( openLockFile( folder_.get(), lockName ) );
   if ( lockFile_->get() < 0 || !lock( lockFile_->get() ) ) {
      throw FileError( path_ + ".lock", std::string( "cannot lock: " ) + std::strerror( errno ) );
   }
}

} // namespace tpcli
