#include "cli/StatusCommand.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "cli/Printable.h"
#include "cli/StateNames.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatchOption;
using PolicyMap::InstalledStatus;
using PolicyMap::PolicyMapStatus;
using wendo::JsonKey;
using wendo::JsonMember;

// The failures of a policy in one family.
struct Failures {
   unsigned count = 0; // of interfaces
   std::set< Vorn::String > errors;
};

std::map< ClassMapMatchOption, Failures > failuresOf( PolicyMapStatus const & policy ) {
   std::map< ClassMapMatchOption, Failures > failures;
   for ( auto const & [intf, status] : policy.intfStatus() ) {
      wendo::interrupt::check();
      for ( auto const & [family, installed] : status->installed() ) {
         if ( installed.status == InstalledStatus::failed ) {
            Failures & here = failures[family];
            ++here.count;
            if ( !installed.error.empty() ) {
               here.errors.insert( installed.error );
            }
         }
      }
   }
   return failures;
}

// The policies that are configured on an interface.
std::set< Vorn::String > configuredOnInterfaces( State const & state ) {
   std::set< Vorn::String > names;
   state.forEachIntfBinding(
      [&]( Pelx::IntfId const &, Vorn::String const & policy ) { names.insert( policy ); } );
   return names;
}

void writeText( wendo::RendererV2 & renderer, size_t interfaces, bool isConfigured,
                std::map< ClassMapMatchOption, Failures > const & failures ) {
   std::string line;
   for ( auto const & [family, here] : failures ) {
      line += line.empty() ? "" : "; ";
      line += std::to_string( here.count ) + " of " + std::to_string( interfaces )
              + ( interfaces == 1 ? " interface failed for " : " interfaces failed for " );
      line += PolicyMap::matchOptionName( family ).view();
      for ( Vorn::String const & error : here.errors ) {
         line.append( error == *here.errors.begin() ? ": " : ", " ).append( error.view() );
      }
   }
   if ( failures.empty() ) {
      line = interfaces == 0
                ? ( isConfigured ? "configured, but on no interface" : "on no interface" )
                : "on " + std::to_string( interfaces )
                     + ( interfaces == 1 ? " interface, no failure" : " interfaces, no failure" );
   }
   renderer.write( ": ", std::string_view( printable( line ) ), '\n' );
}

void writeJson( wendo::RendererV2 & renderer, size_t interfaces,
                std::map< ClassMapMatchOption, Failures > const & failures ) {
   static constexpr JsonKey interfacesKey( "interfaces" );
   static constexpr JsonKey failuresKey( "failures" );
   static constexpr JsonKey familyKey( "family" );
   static constexpr JsonKey failedKey( "failedInterfaces" );
   static constexpr JsonKey errorsKey( "errors" );
   renderer._addJsonKeyValuePair( interfacesKey, uint64_t{ interfaces } );
   auto const list = renderer.list( failuresKey );
   for ( auto const & [family, here] : failures ) {
      auto const entry =
         renderer.listEntry( JsonMember{ familyKey, PolicyMap::matchOptionName( family ) },
                             JsonMember{ failedKey, here.count } );
      auto const errors = renderer.list( errorsKey );
      for ( Vorn::String const & error : here.errors ) {
         renderer._addJsonKeyValuePair( wendo::listElement, error );
      }
   }
}

} // namespace

bool anyFailed( State const & state ) {
   return std::ranges::any_of( state.status->policyMapStatus(), []( auto const & entry ) {
      return !failuresOf( *entry.second ).empty();
   } );
}

void writeStatus( wendo::RendererV2 & renderer, State const & state ) {
   static constexpr JsonKey policiesKey( "policies" );
   std::set< Vorn::String > names;
   forEachName( state, Argument::policy, "",
                [&]( std::string_view name ) { names.emplace( name ); } );
   std::set< Vorn::String > const configured = configuredOnInterfaces( state );
   renderer.startJsonRoot();
   {
      auto const policies = renderer.object( policiesKey );
      for ( Vorn::String const & name : names ) {
         auto const * status = state.status->policyMapStatus( name );
         size_t const interfaces = status ? ( *status )->intfStatus().size() : 0;
         auto const failures =
            status ? failuresOf( **status ) : std::map< ClassMapMatchOption, Failures >();
         auto const policy = renderer.object( name );
         if ( renderer.isJson() ) {
            writeJson( renderer, interfaces, failures );
         } else {
            renderer.write( std::string_view( printable( name.view() ) ) );
            writeText( renderer, interfaces, configured.contains( name ), failures );
         }
      }
   }
   renderer.endJsonRoot();
}

} // namespace tpcli
