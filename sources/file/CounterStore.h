// The counter store on disk.
//
// It is replaced as a whole: a reader sees the old one or the new one, and an error while the new
// one is written leaves the old one unchanged.

#pragma once

#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "sources/FileDescriptor.h"

#include <string>

namespace tpcli {

// Reads a store; returns an empty one when the file does not exist or the path is empty. Names of
// rules are shared with the status. Throws FileError, and SigIntException on interrupt.
Vorn::Ptr< TrafficPolicy::Counter >
readCounterStore( std::string const & path, PolicyMap::PolicyMapTypeStatus const & status );

// Writes a store in place of the old one, durably, with the old one's mode. Needs the lock.
// Throws FileError.
void writeCounterStore( std::string const & path, TrafficPolicy::Counter const & store );

// An exclusive lock for clears: no other clear reads or writes a store in the same folder
// meanwhile. The constructor waits for it; throws SigIntException on interrupt, FileError when the
// folder cannot be locked. The lock is on the folder, so that no lock file is needed.
class CounterStoreLock {
public:
   explicit CounterStoreLock( std::string const & path );

private:
   FileDescriptor folder_;
};

} // namespace tpcli
