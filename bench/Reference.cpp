#include "bench/Reference.h"

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"

#include <rapidjson/writer.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <system_error>

namespace Bench {

namespace {

constexpr size_t bufferSize = wendo::WendoBuffer::viewCapacity;

[[noreturn]] void fail( char const * what ) {
   throw std::system_error( errno, std::generic_category(), what );
}

// Allocated once, as the memory of a view's buffer is.
char * buffer() {
   static auto const memory = std::make_unique_for_overwrite< char[] >( bufferSize );
   return memory.get();
}

// An output stream in RapidJSON's sense. With the two functions below its writer checks for room
// once a string and not once a character.
class FdStream {
public:
   using Ch = char;

   explicit FdStream( int fd )
      : fd_( fd ) {}

   // RapidJSON looks for the operations by these names.
   // NOLINTBEGIN(readability-identifier-naming)
   void Put( char c ) {
      reserve( 1 );
      putUnsafe( c );
   }
   // RapidJSON flushes at the end of its document; the reply's newline is still to come then.
   void Flush() {}
   // NOLINTEND(readability-identifier-naming)

   void writeOut() {
      for ( char const * from = begin_; from != at_; ) {
         ssize_t const written = ::write( fd_, from, static_cast< size_t >( at_ - from ) );
         if ( written < 0 ) {
            fail( "write" );
         }
         from += written;
      }
      at_ = begin_;
   }

   void reserve( size_t count ) {
      if ( static_cast< size_t >( end_ - at_ ) < count ) [[unlikely]] {
         writeOut();
      }
   }
   void putUnsafe( char c ) { *at_++ = c; }

private:
   int fd_;
   char * begin_ = buffer();
   char * at_ = begin_;
   char * end_ = begin_ + bufferSize;
};

// NOLINTBEGIN(readability-identifier-naming)
inline void PutReserve( FdStream & stream, size_t count ) {
   stream.reserve( count );
}
inline void PutUnsafe( FdStream & stream, char c ) {
   stream.putUnsafe( c );
}
// NOLINTEND(readability-identifier-naming)

class ReferenceWriter {
public:
   explicit ReferenceWriter( int fd )
      : stream_( fd )
      , json_( stream_ ) {}

   void write( std::vector< PlainRule > const & rules ) {
      json_.StartObject();
      json_.Key( "trafficPolicies" );
      json_.StartObject();
      json_.Key( "filters" );
      json_.StartObject();
      names( "configuredVrfs", { "all", "default", "mgmt" } );
      names( "ipv4AppliedVrfs", { "default", "mgmt" } );
      names( "ipv6AppliedVrfs", { "mgmt" } );
      names( "namedCounters", { "denied", "permitted" } );
      json_.Key( "rules" );
      json_.StartArray();
      for ( PlainRule const & rule : rules ) {
         writeRule( rule );
      }
      json_.EndArray();
      json_.EndObject();
      json_.EndObject();
      json_.EndObject();
      stream_.Put( '\n' );
      stream_.writeOut();
   }

private:
   void names( char const * key, std::initializer_list< char const * > texts ) {
      json_.Key( key );
      json_.StartArray();
      for ( char const * text : texts ) {
         json_.String( text );
      }
      json_.EndArray();
   }

   void writeRule( PlainRule const & rule ) {
      json_.StartObject();
      json_.Key( "ruleString" );
      json_.String( rule.nameText.data(), rule.nameSize );
      json_.Key( "matchOption" );
      json_.String( "ipv4" );
      json_.Key( "matches" );
      json_.StartObject();
      prefix( "srcPrefixes", rule.filter.source );
      prefix( "destPrefixes", rule.filter.destination );
      if ( !rule.filter.anyProtocol ) {
         protocol( rule.filter );
      }
      if ( rule.dscp ) {
         json_.Key( "dscps" );
         json_.StartArray();
         range( 8, 14 );
         range( 46, 46 );
         json_.EndArray();
      }
      json_.EndObject();
      json_.Key( "actions" );
      json_.StartObject();
      actions( rule );
      json_.EndObject();
      json_.EndObject();
   }

   void prefix( char const * key, Prefix const & value ) {
      if ( value.length == 0 ) {
         return;
      }
      char text[24];
      char * to = text;
      for ( int shift = 24; shift >= 0; shift -= 8 ) {
         to = std::to_chars( to, to + 3, value.address >> shift & 0xff ).ptr;
         *to++ = shift != 0 ? '.' : '/';
      }
      to = std::to_chars( to, to + 3, value.length ).ptr;
      json_.Key( key );
      json_.StartArray();
      json_.String( text, static_cast< rapidjson::SizeType >( to - text ) );
      json_.EndArray();
   }

   void range( unsigned low, unsigned high ) {
      json_.StartObject();
      json_.Key( "low" );
      json_.Uint( low );
      json_.Key( "high" );
      json_.Uint( high );
      json_.EndObject();
   }

   void ports( char const * key, Ports const & value ) {
      if ( !value.any() ) {
         json_.Key( key );
         json_.StartArray();
         range( value.low, value.high );
         json_.EndArray();
      }
   }

   void protocol( Filter const & filter ) {
      json_.Key( "protocols" );
      json_.StartArray();
      json_.StartObject();
      json_.Key( "protocolRange" );
      range( filter.protocol, filter.protocol );
      if ( filter.tcpFlags != 0 ) {
         json_.Key( "tcpFlags" );
         json_.StartArray();
         flag( "initial-syn", filter.tcpFlags & 0x200 );
         flag( "established", filter.tcpFlags & 0x100 );
         json_.EndArray();
      }
      ports( "srcPorts", filter.sourcePorts );
      ports( "destPorts", filter.destinationPorts );
      json_.EndObject();
      json_.EndArray();
   }

   void flag( char const * name, int present ) {
      if ( present ) {
         json_.StartObject();
         json_.Key( "name" );
         json_.String( name );
         json_.Key( "value" );
         json_.Bool( true );
         json_.EndObject();
      }
   }

   void actions( PlainRule const & rule ) {
      switch ( rule.actions ) {
      case Actions::dropCount:
         flagAction( "drop" );
         count( rule );
         break;
      case Actions::countPermitted:
         countNamed( "permitted" );
         break;
      case Actions::dropLogDenied:
         flagAction( "drop" );
         countNamed( "denied" );
         flagAction( "log" );
         break;
      case Actions::policeCount:
         json_.Key( "police" );
         json_.StartObject();
         json_.Key( "rate" );
         json_.Uint( rule.policeRate );
         json_.Key( "unit" );
         json_.String( "kbps" );
         json_.EndObject();
         count( rule );
         break;
      case Actions::setTrafficClass:
         json_.Key( "setTc" );
         json_.Uint( rule.trafficClass );
         break;
      }
   }
   void flagAction( char const * key ) {
      json_.Key( key );
      json_.Bool( true );
   }
   void count( PlainRule const & rule ) {
      json_.Key( "count" );
      json_.Uint64( rule.packets );
   }
   void countNamed( char const * counter ) {
      json_.Key( "countNamed" );
      json_.StartObject();
      json_.Key( counter );
      json_.StartObject();
      json_.Key( "packetCount" );
      json_.Uint64( 48'000 );
      json_.EndObject();
      json_.EndObject();
   }

   FdStream stream_;
   rapidjson::Writer< FdStream > json_;
};

} // namespace

void copyFinished( int fd, std::string_view bytes ) {
   while ( !bytes.empty() ) {
      size_t const piece = std::min( bytes.size(), bufferSize );
      std::memcpy( buffer(), bytes.data(), piece );
      for ( size_t at = 0; at < piece; ) {
         ssize_t const written = ::write( fd, buffer() + at, piece - at );
         if ( written < 0 ) {
            fail( "write" );
         }
         at += static_cast< size_t >( written );
      }
      bytes.remove_prefix( piece );
   }
}

void writeWithRapidJson( int fd, std::vector< PlainRule > const & rules ) {
   ReferenceWriter( fd ).write( rules );
}

Captured::Captured( std::function< void( int fd ) > const & writer ) {
   int const fd = ::memfd_create( "captured", MFD_CLOEXEC );
   if ( fd < 0 ) {
      fail( "memfd_create" );
   }
   writer( fd );
   struct stat status {};
   ::fstat( fd, &status );
   size_ = static_cast< size_t >( status.st_size );
   bytes_ = std::make_unique_for_overwrite< char[] >( size_ );
   for ( size_t at = 0; at < size_; ) {
      ssize_t const got = ::pread( fd, bytes_.get() + at, size_ - at, static_cast< off_t >( at ) );
      if ( got <= 0 ) {
         fail( "pread" );
      }
      at += static_cast< size_t >( got );
   }
   ::close( fd );
}

} // namespace Bench
