// The text of a file, read in windows, so that memory does not grow with the file.

#pragma once

#include "sources/FileDescriptor.h"
#include "sources/LargePages.h"
#include "sources/Progress.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tpcli {

class InputFile {
public:
   static constexpr size_t defaultStep = size_t{ 256 } << 10;
   // There are so many zero bytes behind the window.
   static constexpr size_t padding = 16;

   // Opens the file; "-" is standard input. A step is what is read at once, in bytes. The window is
   // empty until the first advance. Throws FileError, SigIntException.
   explicit InputFile( std::string const & path, size_t step = defaultStep );

   // The file's name, or "standard input".
   std::string const & name() const { return name_; }

   // The window.
   char const * begin() const { return buffer_.data(); }
   char const * end() const { return buffer_.data() + size_; }

   // Moves the window on: it begins with what stands at `keep` then, which may be its end, and has
   // what follows in the file behind its old end. False, with nothing changed but the window's
   // begin, at the end of the file. Memory grows with what is kept. Throws FileError,
   // SigIntException.
   bool advance( char const * keep );

private:
   // Up to a step more, behind the window; 0 at the end of the file.
   size_t read();

   std::string name_;
   FileDescriptor file_;
   size_t step_;
   std::vector< char > buffer_; // the window and its padding
   size_t size_ = 0;            // of the window
   Progress progress_;
   LargePages largePages_;
};

} // namespace tpcli
