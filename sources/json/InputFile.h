// A whole input file in memory.

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tpcli {

class InputFile {
public:
   // Reads the file; "-" is standard input. Throws FileError.
   explicit InputFile( std::string const & path );

   std::string_view text() const { return { bytes_.get(), size_ }; }
   // The bytes that may be read, as the JSON parser wants: some more than the text has.
   size_t capacity() const { return capacity_; }

private:
   struct Free {
      void operator()( char * bytes ) const;
   };
   // A new capacity, keeping what was read.
   void grow( size_t capacity );
   void readAll( int fd, std::string const & path );

   std::unique_ptr< char, Free > bytes_;
   size_t size_ = 0;
   size_t capacity_ = 0;
};

} // namespace tpcli
