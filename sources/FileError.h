// The error of reading or writing a file.

#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>

namespace tpcli {

// Where in a document. What is not known is left out.
struct FilePlace {
   std::optional< std::string > pointer{}; // a JSON pointer (RFC 6901); empty: the whole document
   size_t line = 0;                        // from 1; 0: not known, and so is the column
   size_t column = 0;                      // in bytes, from 1
};

// A file that cannot be read, understood or written. what() is one line with all that is known:
//
//    state.json: line 3, column 17: /config/cpu/default: 1 is not a string
class FileError : public std::runtime_error {
public:
   // The file's name, or "standard input"; empty where it is not known.
   FileError( std::string const & file, std::string const & message, FilePlace const & place = {} );

   std::string const & file() const { return file_; }
   std::string const & message() const { return message_; }
   FilePlace const & place() const { return place_; }

private:
   std::string file_;
   std::string message_;
   FilePlace place_;
};

} // namespace tpcli
