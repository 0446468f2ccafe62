#include "cli/Workspace.h"

#include "sources/file/CounterStore.h"

#include <sys/stat.h>

namespace tpcli {

void Workspace::read() {
   readSource();
   counterStore_ = readCounterStore( counterStorePath(), *state().status );
}

void Workspace::readIfChanged() {
   if ( !identity_ || identity_ != identity() ) {
      readSource();
   }
}

void Workspace::readSource() {
   identity_.reset();
   // Before it is read: what changes meanwhile is read again.
   auto const now = identity();
   reading_ = findSource( options_.statePath )->read();
   identity_ = now;
}

std::string Workspace::counterStorePath() const {
   return options_.counterStorePath.empty()
             ? findSource( options_.statePath )->defaultCounterStore()
             : options_.counterStorePath;
}

std::optional< Workspace::Identity > Workspace::identity() const {
   struct stat file {};
   if ( ::stat( options_.statePath.c_str(), &file ) < 0 ) {
      return std::nullopt;
   }
   return Identity{ file.st_dev, file.st_ino, static_cast< uint64_t >( file.st_size ),
                    static_cast< uint64_t >( file.st_mtim.tv_sec ),
                    static_cast< uint64_t >( file.st_mtim.tv_nsec ) };
}

} // namespace tpcli
