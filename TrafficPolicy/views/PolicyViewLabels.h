// The labels and JSON keys of the two sides: all that their policy views differ in.

#pragma once

#include "TrafficPolicy/model/Binding.h"
#include "TrafficPolicy/platform/wendo/JsonKey.h"

#include <string_view>

namespace TrafficPolicyCli {

// A labelled list of binding names.
struct ListLabel {
   std::string_view text;
   wendo::JsonKey key;
};

// The lists of one address family.
struct FamilyLabels {
   ClassMapMatchOption option;
   ListLabel applied;
   ListLabel failed;
   wendo::JsonKey errors;
};

struct PolicyViewLabels {
   ListLabel configured;
   FamilyLabels families[2]; // in output order
   std::string_view failedWarning;
   // For the trace: the function that writes a rule, the signature of the one that writes errors.
   char const * ruleFunction;
   std::string_view errorsSignature;
};

template< typename Binding >
extern PolicyViewLabels const policyViewLabels;

template<>
inline constexpr PolicyViewLabels policyViewLabels< CpuBinding >{
   .configured = { "Configured on CPU for VRFs: ", wendo::JsonKey( "configuredVrfs" ) },
   .families = { { ClassMapMatchOption::ipv4,
                   { "Applied on CPU for IPv4 traffic in VRFs: ",
                     wendo::JsonKey( "ipv4AppliedVrfs" ) },
                   { "Failed on CPU for IPv4 traffic in VRFs: ",
                     wendo::JsonKey( "ipv4FailedVrfs" ) },
                   wendo::JsonKey( "ipv4InstallationErrors" ) },
                 { ClassMapMatchOption::ipv6,
                   { "Applied on CPU for IPv6 traffic in VRFs: ",
                     wendo::JsonKey( "ipv6AppliedVrfs" ) },
                   { "Failed on CPU for IPv6 traffic in VRFs: ",
                     wendo::JsonKey( "ipv6FailedVrfs" ) },
                   wendo::JsonKey( "ipv6InstallationErrors" ) } },
   .failedWarning = "WARNING: Policy installation failed. See \"show traffic-policy cpu errors\" "
                    "for details about the failures.\n",
   .ruleFunction = "renderCpuRule",
   .errorsSignature = "void TrafficPolicyCli::renderCpuInstallErrors(wendo::RendererV2&, "
                      "Vorn::String, const PtrConst&, PolicyMap::ClassMapMatchOption, U32)",
};

template<>
inline constexpr PolicyViewLabels policyViewLabels< InterfaceBinding >{
   .configured = { "Configured on interfaces: ", wendo::JsonKey( "configuredIntfs" ) },
   .families = { { ClassMapMatchOption::ipv4,
                   { "Applied on interfaces for IPv4 traffic: ",
                     wendo::JsonKey( "ipv4AppliedIntfs" ) },
                   { "Failed on interfaces for IPv4 traffic: ",
                     wendo::JsonKey( "ipv4FailedIntfs" ) },
                   wendo::JsonKey( "ipv4InstallationErrors" ) },
                 { ClassMapMatchOption::ipv6,
                   { "Applied on interfaces for IPv6 traffic: ",
                     wendo::JsonKey( "ipv6AppliedIntfs" ) },
                   { "Failed on interfaces for IPv6 traffic: ",
                     wendo::JsonKey( "ipv6FailedIntfs" ) },
                   wendo::JsonKey( "ipv6InstallationErrors" ) } },
   .failedWarning = "WARNING: Policy installation failed. See \"show traffic-policy interface "
                    "errors\" for details about the failures.\n",
   .ruleFunction = "renderInterfaceRule",
   .errorsSignature = "void TrafficPolicyCli::renderInterfaceInstallErrors(wendo::RendererV2&, "
                      "Vorn::String, const PtrConst&, PolicyMap::ClassMapMatchOption, U32)",
};

} // namespace TrafficPolicyCli
