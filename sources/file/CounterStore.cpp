#include "sources/file/CounterStore.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "sources/FileError.h"
#include "sources/file/CounterStoreWriter.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>

namespace tpcli {

namespace {

[[noreturn]] void fail( std::string const & path, int error ) {
   throw FileError( path, std::string( "cannot write: " ) + std::strerror( error ) );
}

// The target of a symbolic link, so that replacing it keeps the link.
std::string resolved( std::string const & path ) {
   std::unique_ptr< char, decltype( &std::free ) > const real( ::realpath( path.c_str(), nullptr ),
                                                               &std::free );
   return real ? real.get() : path;
}

std::string folderOf( std::string const & path ) {
   size_t const slash = path.rfind( '/' );
   return slash == path.npos ? "." : slash == 0 ? "/" : path.substr( 0, slash );
}

// A new file beside the store, removed unless it replaces the store. Its name is fixed, so that the
// file of a killed process is overwritten by the next one; the lock keeps others away.
class Replacement {
public:
   explicit Replacement( std::string const & path )
      : path_( path )
      , temporary_( path + ".new" )
      , file_( open( temporary_ ) ) {
      if ( file_.get() < 0 ) {
         fail( temporary_, errno );
      }
   }
   ~Replacement() {
      if ( !inPlace_ ) {
         ::unlink( temporary_.c_str() );
      }
   }
   Replacement( Replacement const & ) = delete;
   Replacement & operator=( Replacement const & ) = delete;

   int fd() const { return file_.get(); }

   void takePlace() {
      struct stat old {};
      bool const hasOld = ::stat( path_.c_str(), &old ) == 0;
      if ( ( hasOld && ::fchmod( fd(), old.st_mode & 07777 ) < 0 ) || ::fsync( fd() ) < 0
           || ::rename( temporary_.c_str(), path_.c_str() ) < 0 ) {
         fail( path_, errno );
      }
      inPlace_ = true;
      FileDescriptor const folder(
         ::open( folderOf( path_ ).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC ) );
      if ( folder.get() < 0 || ::fsync( folder.get() ) < 0 ) {
         fail( path_, errno );
      }
   }

private:
   static int open( std::string const & name ) {
      ::unlink( name.c_str() );
      return ::open( name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666 );
   }

   std::string path_;
   std::string temporary_;
   FileDescriptor file_;
   bool inPlace_ = false;
};

} // namespace

CounterStoreLock::CounterStoreLock( std::string const & path )
   : folder_( ::open( folderOf( resolved( path ) ).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC ) ) {
   if ( folder_.get() < 0 ) {
      fail( path, errno );
   }
   while ( ::flock( folder_.get(), LOCK_EX ) < 0 ) {
      if ( errno != EINTR ) {
         fail( path, errno );
      }
      wendo::interrupt::check();
   }
}

void writeCounterStore( std::string const & path, TrafficPolicy::Counter const & store ) {
   Replacement replacement( resolved( path ) );
   try {
      wendo::WendoBuffer buffer( replacement.fd(), wendo::WendoBuffer::viewCapacity, false );
      formatCounterStore( buffer, store );
      buffer.flush();
   } catch ( std::system_error const & error ) {
      fail( path, error.code().value() );
   }
   replacement.takePlace();
}

} // namespace tpcli
