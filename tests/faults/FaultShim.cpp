// Preloaded into a program, makes one of its calls fail: LD_PRELOAD, and in the environment
//
//    TP_FAULT=CALL N KIND    the N-th call (from 1) of CALL, or with "N+" that and all later ones
//    TP_FAULT_MARK=FD        gets a byte each time it fails
//
// CALL is a family of functions by its usual name: "open" is openat(), too, "malloc" all that
// allocates. They are those of large files, which our programs use on any machine. KIND is an error
// number; "short", for a read or write that does half of what it is asked; or "read-only", for
// locks, as network file systems have them: they fail with EBADF where the descriptor is not open
// for writing.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

struct Fault {
   char call[16] = "";
   unsigned long number = 0;
   bool repeated = false;
   int error = 0; // 0: one of these
   bool isShort = false;
   bool kills = false;
   bool readOnly = false;
   long mark = -1;
};

Fault parse( char const * text ) {
   Fault fault;
   char number[16] = "";
   char kind[16] = "";
   if ( std::sscanf( text, "%15s %15s %15s", fault.call, number, kind ) != 3 ) {
      std::abort();
   }
   char * end = nullptr;
   fault.number = std::strtoul( number, &end, 10 );
   fault.repeated = *end == '+';
   fault.error = static_cast< int >( std::strtol( kind, nullptr, 10 ) );
   fault.isShort = std::strcmp( kind, "short" ) == 0;
   fault.kills = std::strcmp( kind, "kill" ) == 0;
   fault.readOnly = std::strcmp( kind, "read-only" ) == 0;
   if ( char const * const mark = std::getenv( "TP_FAULT_MARK" ) ) {
      fault.mark = std::strtol( mark, nullptr, 10 );
   }
   return fault;
}

// What is to fail. Null before the environment is there, and while it is read.
Fault const * wanted() {
   static Fault fault;
   static enum { unread, reading, known } progress = unread;
   if ( progress == unread ) {
      if ( char const * const text = ::environ ? std::getenv( "TP_FAULT" ) : nullptr ) {
         progress = reading;
         fault = parse( text );
         progress = known;
      }
   }
   return progress == known ? &fault : nullptr;
}

// The fault, if this call is to fail.
Fault const * due( char const * call ) {
   static unsigned long count = 0;
   Fault const * const fault = wanted();
   if ( !fault || std::strcmp( call, fault->call ) != 0
        || ( ++count != fault->number && !( fault->repeated && count > fault->number ) ) ) {
      return nullptr;
   }
   if ( fault->mark >= 0 ) {
      ::syscall( SYS_write, fault->mark, "x", 1 );
   }
   if ( fault->kills ) {
      ::kill( ::getpid(), SIGKILL );
   }
   return fault;
}

// True, with errno set, if this call is to fail.
bool fails( char const * call ) {
   Fault const * const fault = due( call );
   if ( fault && fault->error != 0 ) {
      errno = fault->error;
      return true;
   }
   return false;
}

// The function as it would be without us.
template< auto ours >
auto next( char const * name ) {
   static auto const theirs = reinterpret_cast< decltype( ours ) >( ::dlsym( RTLD_NEXT, name ) );
   return theirs;
}

template< auto ours, typename... Arguments >
int unlessFails( char const * call, char const * name, Arguments... arguments ) {
   return fails( call ) ? -1 : next< ours >( name )( arguments... );
}

size_t half( size_t size, char const * call, bool & failed ) {
   Fault const * const fault = due( call );
   failed = fault && fault->error != 0;
   if ( failed ) {
      errno = fault->error;
   }
   return fault && fault->isShort && size > 1 ? size / 2 : size;
}

// What stands behind the flags, where they ask for it.
unsigned modeOf( int flags, va_list rest ) {
   return flags & O_CREAT ? va_arg( rest, unsigned ) : 0;
}

} // namespace

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): names of the C library.
void * __libc_malloc( size_t );
void * __libc_calloc( size_t, size_t );
void * __libc_realloc( void *, size_t );
void * __libc_memalign( size_t, size_t );
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

int open64( char const * path, int flags, ... ) {
   va_list rest;
   va_start( rest, flags );
   unsigned const mode = modeOf( flags, rest );
   va_end( rest );
   return unlessFails< &::open64 >( "open", "open64", path, flags, mode );
}

int openat64( int folder, char const * path, int flags, ... ) {
   va_list rest;
   va_start( rest, flags );
   unsigned const mode = modeOf( flags, rest );
   va_end( rest );
   return unlessFails< &::openat64 >( "open", "openat64", folder, path, flags, mode );
}

ssize_t read( int fd, void * buffer, size_t size ) {
   bool failed = false;
   size = half( size, "read", failed );
   return failed ? -1 : next< &::read >( "read" )( fd, buffer, size );
}

ssize_t write( int fd, void const * buffer, size_t size ) {
   bool failed = false;
   size = half( size, "write", failed );
   return failed ? -1 : next< &::write >( "write" )( fd, buffer, size );
}

int fsync( int fd ) {
   return unlessFails< &::fsync >( "fsync", "fsync", fd );
}

int renameat( int folder, char const * from, int toFolder, char const * to ) noexcept {
   return unlessFails< &::renameat >( "rename", "renameat", folder, from, toFolder, to );
}

int stat64( char const * path, struct stat64 * status ) noexcept {
   return unlessFails< &::stat64 >( "stat", "stat64", path, status );
}

int fstat64( int fd, struct stat64 * status ) noexcept {
   return unlessFails< &::fstat64 >( "stat", "fstat64", fd, status );
}

int fstatat64( int folder, char const * path, struct stat64 * status, int flags ) noexcept {
   return unlessFails< &::fstatat64 >( "stat", "fstatat64", folder, path, status, flags );
}

int flock( int fd, int operation ) noexcept {
   Fault const * const fault = due( "flock" );
   if ( fault && fault->error != 0 ) {
      errno = fault->error;
      return -1;
   }
   if ( fault && fault->readOnly && ( ::fcntl( fd, F_GETFL ) & O_ACCMODE ) == O_RDONLY ) {
      errno = EBADF;
      return -1;
   }
   return next< &::flock >( "flock" )( fd, operation );
}

void * malloc( size_t size ) noexcept {
   return fails( "malloc" ) ? nullptr : __libc_malloc( size );
}

void * calloc( size_t count, size_t size ) noexcept {
   return fails( "malloc" ) ? nullptr : __libc_calloc( count, size );
}

void * realloc( void * block, size_t size ) noexcept {
   return fails( "malloc" ) ? nullptr : __libc_realloc( block, size );
}

void * aligned_alloc( size_t alignment, size_t size ) noexcept {
   return fails( "malloc" ) ? nullptr : __libc_memalign( alignment, size );
}

} // extern "C"
