// The counter store on disk.
//
// It is replaced as a whole: a reader sees the old one or the new one, and an error while the new
// one is written leaves the old one unchanged.

#pragma once

#include "TrafficPolicy/platform/records/StatusRecords.h"
#include "sources/FileDescriptor.h"

#include <optional>
#include <string>

namespace tpcli {

// Reads a store; returns an empty one when the file does not exist or the path is empty. Names of
// rules are shared with the status. Throws FileError, and SigIntException on interrupt.
Vorn::Ptr< TrafficPolicy::Counter >
readCounterStore( std::string const & path, PolicyMap::PolicyMapTypeStatus const & status );

// The exclusive right to replace a store: no other clear reads or writes a store in the same folder
// meanwhile.
//
// The lock is on the folder, so that no lock file is needed. A network file system that locks only
// files, and only those that are open for writing, gets one: the store's name with ".lock", which
// stays, since to remove it would take it from under those who wait for it.
class CounterStoreLock {
public:
   // The store's path; symbolic links in it are followed once, here. Waits for the lock. Throws
   // SigIntException on interrupt, FileError when there is no lock to be had.
   explicit CounterStoreLock( std::string const & path );

   // Writes a store in place of the old one, durably, with the old one's mode, owner and group.
   // Returns what of these could not be kept, in words, else an empty text. Throws FileError, after
   // which the old store is unchanged unless the message says otherwise; SigIntException.
   std::string write( TrafficPolicy::Counter const & store ) const;

private:
   std::string path_;
   FileDescriptor folder_;
   std::optional< FileDescriptor > lockFile_;
};

} // namespace tpcli
