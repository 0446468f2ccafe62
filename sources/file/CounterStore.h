// The counter store on disk.
//
// It is replaced as a whole: a reader sees the old one or the new one, and whatever goes wrong
// while the new one is written leaves the old one as it was.

#pragma once

#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "sources/FileDescriptor.h"

#include <string>

namespace tpcli {

// Reads a store; an empty one where the file is not there. The status tells names that are known
// already. Throws FileError.
Vorn::Ptr< TrafficPolicy::Counter >
readCounterStore( std::string const & path, PolicyMap::PolicyMapTypeStatus const & status );

// Writes a store in place of the old one, durably, with the old one's mode. Needs the lock.
// Throws FileError.
void writeCounterStore( std::string const & path, TrafficPolicy::Counter const & store );

// While this lives, no other clear reads or writes a store in the same folder. Waits for it; an
// interrupt ends the wait. The lock is on the folder, so that it leaves no file behind.
class CounterStoreLock {
public:
   explicit CounterStoreLock( std::string const & path );

private:
   FileDescriptor folder_;
};

} // namespace tpcli
