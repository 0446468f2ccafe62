// The records of one policy of a switch: what the forms of real switches have in common.
//
// Every rule has one family, a match record and a class status, and counts into its own counter,
// into a named counter of its own name, or not at all.

#pragma once

#include "sources/State.h"

#include <array>

namespace tpcli {

struct SwitchRule {
   enum class Count { none, own, named };

   Vorn::String name;
   PolicyMap::ClassMapMatchOption family = PolicyMap::ClassMapMatchOption::ipv4;
   Vorn::Ptr< Classification::StructuredFilter const > filter; // not null
   bool drop = false;
   bool log = false;

   Count count = Count::none;
   Umbo::UniqueId counterId;
   PolicyMap::PacketAndByte total;
   // Counts by interface, of a named counter.
   std::vector< std::pair< Pelx::IntfId, PolicyMap::PacketAndByte > > interfaces;
};

class PolicyBuilder {
public:
   // The policy is configured and has a status, without rules so far.
   PolicyBuilder( State & state, Vorn::String const & name );

   void reserve( size_t rules );
   // Adds a rule behind those that are there. Its name is none of theirs. Throws FileError when a
   // policy cannot have so many.
   void add( SwitchRule const & rule );
   // The outcome of the installation on an interface.
   void installedIs( Pelx::IntfId const & intf, PolicyMap::ClassMapMatchOption family,
                     PolicyMap::InstalledStatus const & installed );

   Vorn::String const & name() const { return status_->name(); }
   // The families that its rules have, as bits.
   bool hasFamily( PolicyMap::ClassMapMatchOption family ) const {
      return ( families_ >> static_cast< unsigned >( family ) & 1 ) != 0;
   }

private:
   void addNamedCounter( SwitchRule const & rule );
   Vorn::Ptr< PolicyMap::ClassAction const > actions( SwitchRule const & rule );

   Vorn::Ptr< PolicyMap::PolicyMapSubConfig > config_;
   Vorn::Ptr< PolicyMap::PolicyMapStatus > status_;
   Vorn::HashMap< Pelx::IntfId, Vorn::Ptr< PolicyMap::IntfStatus > > interfaces_;
   // Most rules do one of a few things, and then share the record. By drop, log, and own count.
   std::array< Vorn::Ptr< PolicyMap::ClassAction const >, 8 > usualActions_;
   uint32_t rules_ = 0;
   unsigned families_ = 0;
};

inline constexpr PolicyMap::ClassMapMatchOption allFamilies[] = {
   PolicyMap::ClassMapMatchOption::ipv4, PolicyMap::ClassMapMatchOption::ipv6,
   PolicyMap::ClassMapMatchOption::mac, PolicyMap::ClassMapMatchOption::mpls
};

} // namespace tpcli
