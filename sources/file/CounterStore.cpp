#include "sources/file/CounterStore.h"

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "sources/FileError.h"
#include "sources/SystemCall.h"
#include "sources/file/CounterStoreWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <system_error>

namespace tpcli {

namespace {

[[noreturn]] void fail( std::string const & path, std::string const & why ) {
   throw FileError( path, "cannot write: " + why );
}

[[noreturn]] void fail( std::string const & path, int error ) {
   fail( path, std::strerror( error ) );
}

std::string ownerOf( struct stat const & status ) {
   return "owner " + std::to_string( status.st_uid ) + " and group "
          + std::to_string( status.st_gid );
}

// A new file beside the store, removed unless it replaces the store. Its name is fixed, so that the
// file of a killed process is overwritten by the next one; the lock keeps others away.
class Replacement {
public:
   // The folder is open, and outlives this.
   Replacement( std::string const & path, int folder )
      : path_( path )
      , name_( path.substr( path.rfind( '/' ) + 1 ) )
      , temporary_( name_ + ".new" )
      , folder_( folder )
      , hasOld_( findOld() )
      , file_( open() ) {}
   ~Replacement() {
      if ( !inPlace_ ) {
         ::unlinkat( folder_, temporary_.c_str(), 0 );
      }
   }
   Replacement( Replacement const & ) = delete;
   Replacement & operator=( Replacement const & ) = delete;

   int fd() const { return file_.get(); }

   // Returns what of the old file could not be kept.
   std::string takePlace() {
      std::string lost;
      if ( hasOld_ ) {
         lost = takeOwner();
         if ( ::fchmod( fd(), old_.st_mode & 07777 ) < 0 ) {
            fail( path_, errno );
         }
      }
      if ( interruptible( [&] { return ::fsync( fd() ); } ) < 0 ) {
         fail( path_, errno );
      }
      if ( ::renameat( folder_, temporary_.c_str(), folder_, name_.c_str() ) < 0 ) {
         if ( errno == EBUSY ) {
            fail( path_, "it is a mount of its own, which cannot be replaced: mount its folder" );
         }
         fail( path_, errno );
      }
      inPlace_ = true;
      // Some file systems know no such call for folders (EINVAL).
      if ( retried( [&] { return ::fsync( folder_ ); } ) < 0 && errno != EINVAL ) {
         throw FileError(
            path_, std::string( "the new store is in place, but may not survive a power cut: " )
                      + std::strerror( errno ) );
      }
      return lost;
   }

private:
   bool findOld() {
      if ( ::fstatat( folder_, name_.c_str(), &old_, AT_SYMLINK_NOFOLLOW ) == 0 ) {
         return true;
      }
      if ( errno != ENOENT ) {
         fail( path_, errno );
      }
      return false;
   }

   int open() const {
      int const removed = ::unlinkat( folder_, temporary_.c_str(), 0 ) < 0 ? errno : 0;
      // Nobody who may not read the old store reads the new one meanwhile.
      int const fd = retried( [&] {
         return ::openat( folder_, temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                          hasOld_ ? 0600 : 0666 );
      } );
      if ( fd < 0 && errno == EEXIST ) {
         fail( path_ + ".new", std::string( "it is in the way and cannot be removed (" )
                                  + std::strerror( removed ) + "): have its owner remove it" );
      }
      if ( fd < 0 ) {
         fail( path_ + ".new", errno );
      }
      return fd;
   }

   std::string takeOwner() const {
      struct stat own {};
      if ( ::fstat( fd(), &own ) < 0 ) {
         fail( path_, errno );
      }
      auto const keeps = [&] { return own.st_uid == old_.st_uid && own.st_gid == old_.st_gid; };
      if ( keeps() || ::fchown( fd(), old_.st_uid, old_.st_gid ) == 0 ) {
         return "";
      }
      std::string const why = std::strerror( errno );
      // Only root gives files away, but anybody to a group of their own.
      static_cast< void >( ::fchown( fd(), static_cast< uid_t >( -1 ), old_.st_gid ) );
      static_cast< void >( ::fstat( fd(), &own ) );
      return path_ + ": cannot keep " + ownerOf( old_ ) + " (" + why + "): it has now "
             + ownerOf( own );
   }

   std::string path_;
   std::string name_; // in the folder
   std::string temporary_;
   int folder_;
   struct stat old_ {};
   bool hasOld_;
   FileDescriptor file_;
   bool inPlace_ = false;
};

} // namespace

std::string CounterStoreLock::write( TrafficPolicy::Counter const & store ) const {
   Replacement replacement( path_, folder_.get() );
   try {
      wendo::WendoBuffer buffer( replacement.fd(), wendo::WendoBuffer::viewCapacity, false );
      formatCounterStore( buffer, store );
      buffer.flush();
   } catch ( std::system_error const & error ) {
      fail( path_, error.code().value() );
   }
   return replacement.takePlace();
}

} // namespace tpcli
