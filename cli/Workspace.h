// What a command works on. It outlives the command, so that a program that is about to end need not
// take it down, and so that names can be completed from the state that was read last.

#pragma once

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "cli/CommandLine.h"
#include "sources/Source.h"

#include <sys/types.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tpcli {

class Workspace {
public:
   // The options are the caller's and outlive this.
   explicit Workspace( Options const & options )
      : options_( options ) {}

   // Reads the source anew, and the counter store with it. Throws FileError.
   void read();
   void readSource();
   // Reads the source, unless it is the one that was read last and has not changed since. Throws
   // FileError; nothing can be read twice from standard input.
   void readIfChanged();

   State const & state() const { return reading_.state; }
   std::vector< std::string > const & notes() const { return reading_.notes; }
   // The counts at the last clear, as they were read.
   Vorn::Ptr< TrafficPolicy::Counter > const & counterStore() const { return counterStore_; }
   // Empty where no store is read and none can be written.
   std::string counterStorePath() const;
   // The user said where it is.
   bool isCounterStoreNamed() const { return !options_.counterStorePath.empty(); }

   // The show that ran last.
   Vorn::Ptr< TrafficPolicyCli::ShowTrafficPolicyBase > show;

private:
   // Tells a file from its successor: device, inode, size, and the time of its change.
   using Identity = std::array< uint64_t, 5 >;

   // None where the source is no file.
   std::optional< Identity > identity() const;

   Options const & options_;
   Reading reading_;
   std::optional< Identity > identity_; // of what was read
   Vorn::Ptr< TrafficPolicy::Counter > counterStore_;
};

} // namespace tpcli
