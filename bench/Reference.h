// The baselines of the measurements, each through a buffer of the same size into the same
// descriptor.

#pragma once

#include "bench/PlainRules.h"

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace Bench {

// The limit: the finished bytes copied into the buffer piece by piece.
void copyFinished( int fd, std::string_view bytes );

// The usual way: the CPU show's JSON written by RapidJSON's writer, straight from the array.
void writeWithRapidJson( int fd, std::vector< PlainRule > const & rules );

// What a writer writes, kept in memory.
class Captured {
public:
   Captured() = default;
   explicit Captured( std::function< void( int fd ) > const & writer );

   std::string_view view() const { return { bytes_.get(), size_ }; }

private:
   std::unique_ptr< char[] > bytes_;
   size_t size_ = 0;
};

} // namespace Bench
