// What is measured: every show, clearing, and the caching alone.

#pragma once

#include "bench/PolicyBuilder.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Bench {

// The inputs of one size.
struct World {
   World( std::vector< Filter > const & filters, size_t count, BuildOptions const & options );

   std::vector< PlainRule > rules;
   Inputs inputs;
   Vorn::Ptr< TrafficPolicy::Counter > cleared; // a store as a clear leaves it
};

// One run of a command: made fresh, run once, dropped.
class Command {
public:
   Command() = default;
   virtual ~Command() = default;
   Command( Command const & ) = delete;
   Command & operator=( Command const & ) = delete;

   virtual void run( int fd ) = 0;
};

struct Case {
   std::string name;
   std::function< std::unique_ptr< Command >( World const & ) > command;
   bool writes = true;     // into the descriptor
   bool reference = false; // shows the rules whole, as the reference does
   bool same = false;      // writes the reference's very bytes
};

std::vector< Case > allCases();

} // namespace Bench
