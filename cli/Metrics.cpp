#include "cli/Metrics.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "cli/JsonText.h"

#include <array>
#include <map>
#include <string>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatchOption;
using PolicyMap::InstalledStatus;
using PolicyMap::PacketDataStatus;
using PolicyMap::PolicyMapStatus;
using wendo::RendererV2;

struct Family {
   std::string_view name; // without the suffix of counters
   std::string_view unit; // also the end of the name; empty: none
   std::string_view help;
   bool isCounter = false;
};

constexpr Family rules{ "traffic_policy_rules", "", "Rules that are configured." };
constexpr Family rulePackets{ "traffic_policy_rule_packets", "packets",
                              "Packets that a rule's own counter counted.", true };
constexpr Family counterPackets{ "traffic_policy_counter_packets", "packets",
                                 "Packets that a named counter counted.", true };
constexpr Family counterBytes{ "traffic_policy_counter_bytes", "bytes",
                               "Bytes that a named counter counted.", true };
constexpr Family interfacePackets{ "traffic_policy_counter_interface_packets", "packets",
                                   "Packets that a named counter counted on an interface.", true };
constexpr Family interfaceBytes{ "traffic_policy_counter_interface_bytes", "bytes",
                                 "Bytes that a named counter counted on an interface.", true };
constexpr Family configured{ "traffic_policy_configured", "", "Where a policy is configured: 1." };
constexpr Family installed{ "traffic_policy_installed", "",
                            "Whether the hardware has a policy: 1, or 0 where that failed." };
constexpr Family readSeconds{ "traffic_policy_read_seconds", "seconds",
                              "How long reading the state took." };
constexpr Family readTimestamp{ "traffic_policy_read_timestamp_seconds", "seconds",
                                "When the state was read." };

// The text for the inside of a label's quotes: both formats know three escapes, and want UTF-8.
std::string labelText( Vorn::String const & text ) {
   if ( text.plain() ) {
      return std::string( text.view() );
   }
   std::string const json = jsonText( text.view() );
   std::string label;
   for ( size_t at = 1; at + 1 < json.size(); ++at ) {
      if ( json[at] != '\\' ) {
         label += json[at];
         continue;
      }
      static constexpr std::string_view letters = "bfrt";
      static constexpr std::string_view meant = "\b\f\r\t";
      char const c = json[++at];
      if ( size_t const letter = letters.find( c ); letter != letters.npos ) {
         label += meant[letter];
      } else if ( c == 'u' ) {
         auto const code = std::stoul( json.substr( at + 1, 4 ), nullptr, 16 );
         // Parsers take a NUL for the end.
         label += code == 0 ? std::string( "\xef\xbf\xbd" )
                            : std::string( 1, static_cast< char >( code ) );
         at += 4;
      } else {
         label += { '\\', c };
      }
   }
   return label;
}

std::string label( std::string_view name, Vorn::String const & value ) {
   return std::string( name ).append( "=\"" ).append( labelText( value ) ).append( "\"" );
}

class MetricsWriter {
public:
   MetricsWriter( RendererV2 & renderer, State const & state, MetricsOptions const & options )
      : renderer_( renderer )
      , state_( state )
      , options_( options ) {}

   void write();

private:
   // The family's metadata, before its samples.
   void begin( Family const & family );
   // A sample. The labels are finished ones, one behind the other.
   template< typename Value >
   void sample( Family const & family, std::string_view labels, Value value ) {
      renderer_.write( family.name, std::string_view( family.isCounter ? "_total" : "" ) );
      if ( !labels.empty() ) {
         renderer_.write( '{', labels, '}' );
      }
      renderer_.write( ' ', value, '\n' );
   }
   // Calls the function with the policy's label and its status, or its configuration.
   template< typename Function >
   void forEachStatus( Function const & function );
   template< typename Function >
   void forEachConfig( Function const & function );

   // Calls the function with the labels of each named counter that is to be told, and what the
   // hardware says of it. One that has a rule's name is the rule's.
   template< typename Function >
   void forEachCounter( Function const & function );

   void writeRules();
   void writeRulePackets();
   void writeCounters( Family const & family, uint64_t PolicyMap::PacketAndByte::*count );
   void writeInterfaceCounters( Family const & family, uint64_t PolicyMap::PacketAndByte::*count );
   void writeConfigured();
   void writeInstalled( std::string const & policy, PolicyMapStatus const & status );

   RendererV2 & renderer_;
   State const & state_;
   MetricsOptions const & options_;
};

void MetricsWriter::begin( Family const & family ) {
   // OpenMetrics names a family of counters without the suffix of its samples.
   std::string_view const suffix = family.isCounter && !options_.openMetrics ? "_total" : "";
   renderer_.write( "# HELP ", family.name, suffix, ' ', family.help, '\n' );
   renderer_.write( "# TYPE ", family.name, suffix,
                    std::string_view( family.isCounter ? " counter\n" : " gauge\n" ) );
   if ( options_.openMetrics && !family.unit.empty() ) {
      renderer_.write( "# UNIT ", family.name, ' ', family.unit, '\n' );
   }
}

template< typename Function >
void MetricsWriter::forEachStatus( Function const & function ) {
   for ( auto const & [name, status] : state_.status->policyMapStatus() ) {
      if ( status ) {
         function( label( "policy", name ), *status );
      }
   }
}

template< typename Function >
void MetricsWriter::forEachConfig( Function const & function ) {
   for ( auto const & [name, policy] : state_.config->policyMapConfig() ) {
      if ( policy && policy->currCfg() ) {
         function( label( "policy", name ), *policy->currCfg() );
      }
   }
}

void MetricsWriter::writeRules() {
   begin( rules );
   forEachConfig( [&]( std::string const & policy, auto const & config ) {
      sample( rules, policy, uint64_t{ config.classSequence().size() } );
   } );
}

void MetricsWriter::writeRulePackets() {
   begin( rulePackets );
   forEachConfig( [&]( std::string const & policy, auto const & config ) {
      auto const * status = state_.status->policyMapStatus( config.policyName() );
      if ( !status || !*status ) {
         return;
      }
      PolicyMap::ClassStatuses::Cursor statuses( ( *status )->cmap() );
      PolicyMap::ClassActions::Cursor actions( config.classAction() );
      for ( auto const & [number, name] : config.classSequence() ) {
         wendo::interrupt::check();
         auto const * found = actions.find( name );
         auto const * count = found && *found ? PolicyMap::actionAs< PolicyMap::CountAction >(
                                 ( *found )->policyAction( PolicyMap::ActionType::count ) )
                                              : nullptr;
         auto const * rule = statuses.find( name );
         if ( rule && *rule && count && count->counterName().empty() ) {
            sample( rulePackets, policy + "," + label( "rule", name ), ( *rule )->packetCount() );
         }
      }
   } );
}

template< typename Function >
void MetricsWriter::forEachCounter( Function const & function ) {
   forEachStatus( [&]( std::string const & policy, PolicyMapStatus const & status ) {
      auto const * config = state_.config->policyMapConfig( status.name() );
      auto const * current = config && *config ? ( *config )->currCfg().get() : nullptr;
      for ( auto const & [name, counter] : status.counterStatus() ) {
         wendo::interrupt::check();
         bool const isRule = current && current->rawClassMap( name );
         if ( counter && ( options_.rules || !isRule ) ) {
            function( policy + "," + label( "counter", name ), *counter );
         }
      }
   } );
}

void MetricsWriter::writeCounters( Family const & family,
                                   uint64_t PolicyMap::PacketAndByte::*count ) {
   begin( family );
   forEachCounter( [&]( std::string const & labels, PacketDataStatus const & counter ) {
      sample( family, labels, counter.total().*count );
   } );
}

void MetricsWriter::writeInterfaceCounters( Family const & family,
                                            uint64_t PolicyMap::PacketAndByte::*count ) {
   begin( family );
   forEachCounter( [&]( std::string const & labels, PacketDataStatus const & counter ) {
      for ( auto const & [intf, data] : counter.intfCountData() ) {
         wendo::interrupt::check();
         if ( data ) {
            sample( family, labels + "," + label( "interface", intf.string() ),
                    data->countData().*count );
         }
      }
   } );
}

void MetricsWriter::writeConfigured() {
   begin( configured );
   auto const add = [&]( std::string_view name ) {
      return [this, name]( auto const & binding, Vorn::String const & policy ) {
         wendo::interrupt::check();
         sample( configured, label( "policy", policy ) + "," + label( name, binding.string() ),
                 1u );
      };
   };
   state_.forEachVrfBinding( add( "vrf" ) );
   state_.forEachIntfBinding( add( "interface" ) );
}

// An interface alone, or those of a VRF together: all programmed, one failed, or neither.
struct Outcome {
   bool allProgrammed = true;
   bool anyFailed = false;
};

void MetricsWriter::writeInstalled( std::string const & policy, PolicyMapStatus const & status ) {
   constexpr size_t families = 4;
   std::map< L3::VrfName, std::array< Outcome, families > > vrfs;
   auto const add = [&]( std::string const & where, size_t family, Outcome const & outcome ) {
      if ( outcome.allProgrammed || outcome.anyFailed ) {
         Vorn::String const name(
            PolicyMap::matchOptionName( static_cast< ClassMapMatchOption >( family ) ).view() );
         sample( installed, policy + "," + where + "," + label( "family", name ),
                 outcome.allProgrammed ? 1u : 0u );
      }
   };
   for ( auto const & [intf, intfStatus] : status.intfStatus() ) {
      wendo::interrupt::check();
      if ( !intfStatus ) {
         continue;
      }
      auto const * l3 = state_.l3IntfStatusDir->intfStatus( intf );
      auto * const ofVrf = l3 && *l3 ? &vrfs[( *l3 )->vrf()] : nullptr;
      std::string const where = label( "interface", intf.string() );
      for ( size_t family = 0; family < families; ++family ) {
         auto const * found = intfStatus->installed( static_cast< ClassMapMatchOption >( family ) );
         unsigned const code = found ? found->status : 0u;
         Outcome const outcome{ code == InstalledStatus::programmed,
                                code == InstalledStatus::failed };
         add( where, family, outcome );
         if ( ofVrf ) {
            ( *ofVrf )[family].allProgrammed &= outcome.allProgrammed;
            ( *ofVrf )[family].anyFailed |= outcome.anyFailed;
         }
      }
   }
   for ( auto const & [vrf, outcomes] : vrfs ) {
      for ( size_t family = 0; family < families; ++family ) {
         add( label( "vrf", vrf.string() ), family, outcomes[family] );
      }
   }
}

void MetricsWriter::write() {
   bool const bytes = state_.status->byteCountersSupported();
   writeRules();
   if ( options_.rules ) {
      writeRulePackets();
   }
   writeCounters( counterPackets, &PolicyMap::PacketAndByte::packets );
   if ( bytes ) {
      writeCounters( counterBytes, &PolicyMap::PacketAndByte::bytes );
   }
   writeInterfaceCounters( interfacePackets, &PolicyMap::PacketAndByte::packets );
   if ( bytes ) {
      writeInterfaceCounters( interfaceBytes, &PolicyMap::PacketAndByte::bytes );
   }
   writeConfigured();
   begin( installed );
   forEachStatus( [&]( std::string const & policy, PolicyMapStatus const & status ) {
      writeInstalled( policy, status );
   } );
   begin( readSeconds );
   sample( readSeconds, "", options_.readSeconds );
   begin( readTimestamp );
   sample( readTimestamp, "", options_.readTimestamp );
   if ( options_.openMetrics ) {
      renderer_.write( "# EOF\n" );
   }
}

} // namespace

void writeMetrics( RendererV2 & renderer, State const & state, MetricsOptions const & options ) {
   MetricsWriter( renderer, state, options ).write();
}

} // namespace tpcli
