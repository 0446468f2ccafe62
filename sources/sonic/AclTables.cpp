#include "sources/sonic/AclTables.h"

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "sources/NameHash.h"
#include "sources/TextArena.h"
#include "sources/rules/Texts.h"
#include "sources/sonic/RuleReader.h"

#include <algorithm>
#include <deque>
#include <limits>
#include <map>
#include <memory>
#include <span>

namespace tpcli {

namespace {

using PolicyMap::ClassMapMatchOption;
using PolicyMap::InstalledStatus;

constexpr std::string_view tablePrefix = "ACL_TABLE|";
constexpr std::string_view rulePrefix = "ACL_RULE|";
constexpr std::string_view activeText = "Active";

struct Table;

struct Rule {
   Table & table;
   std::string_view key; // "TABLE|RULE"
   ConfiguredRule configured;
   bool active = false;

   std::string_view name() const;
};

struct Table {
   std::string_view name;
   std::optional< ClassMapMatchOption > family; // of all its rules
   bool isEgress = false;
   bool isControlPlane = false;
   std::vector< std::string > ports;
   std::deque< Rule > rules;              // by name
   size_t firstRule = 0;                  // its place among all
   std::optional< PolicyBuilder > policy; // unless it is egress
   bool hasStatus = false;
   bool active = false;
};

std::string_view Rule::name() const {
   return key.substr( table.name.size() + 1 );
}

bool sameWord( std::string_view a, std::string_view lower ) {
   return std::ranges::equal( a, lower, []( char x, char y ) {
      return ( x >= 'A' && x <= 'Z' ? x - 'A' + 'a' : x ) == y;
   } );
}

std::string_view valueOf( Hashes::Fields const & fields, std::string_view name ) {
   auto const found = std::ranges::find( fields, name, &Hashes::Fields::value_type::first );
   return found == fields.end() ? std::string_view() : found->second;
}

// The tables and rules of a switch, read step by step.
class AclReader {
public:
   AclReader( Hashes & hashes, Reading & reading )
      : hashes_( hashes )
      , reading_( reading ) {}

   void read() {
      readTables();
      readRules();
      readStatus();
      addRules();
      for ( auto & [name, table] : tables_ ) {
         if ( table->policy ) {
            bind( *table );
            if ( table->hasStatus ) {
               install( *table );
            }
         }
      }
   }

private:
   void note( std::string_view place, std::string_view text ) {
      addNote( reading_.notes, place, text );
   }
   void readTables();
   void readTable( Table & table, std::string_view key, Hashes::Fields const & fields );
   void readRules();
   Table * tableOf( std::string_view rule );
   void readStatus();
   void addRules();
   std::vector< std::string_view > findCounters();
   void readCount( SwitchRule & rule, std::string_view id, Hashes::Fields const & fields );
   void addRulesBefore( size_t end );
   void bind( Table const & table );
   void install( Table & table );

   Hashes & hashes_;
   Reading & reading_;
   std::map< std::string_view, std::unique_ptr< Table > > tables_;
   std::vector< Rule * > rules_; // all that are shown, policy by policy, in order
   size_t added_ = 0;            // of them
   TextArena ids_;
};

void AclReader::readTables() {
   auto const keys = hashes_.keys( SonicDatabase::config, tablePrefix );
   hashes_.fetch( SonicDatabase::config, "", keys, [&]( size_t at, Hashes::Fields const & fields ) {
      std::string_view const name = keys[at].substr( tablePrefix.size() );
      if ( name.empty() ) {
         note( keys[at], "a table without a name cannot be shown" );
      } else if ( !fields.empty() ) {
         auto table = std::make_unique< Table >();
         table->name = name;
         readTable( *table, keys[at], fields );
         tables_.emplace( name, std::move( table ) );
      }
   } );
}

void AclReader::readTable( Table & table, std::string_view key, Hashes::Fields const & fields ) {
   std::string_view const type = valueOf( fields, "type" );
   table.family = familyOfTable( type );
   table.isControlPlane = sameWord( type, "ctrlplane" );
   table.isEgress = sameWord( valueOf( fields, "stage" ), "egress" );
   if ( table.isEgress ) {
      note( key, "an egress table cannot be shown: these shows are of ingress" );
   }
   std::string_view ports = valueOf( fields, "ports@" );
   ports = ports.empty() ? valueOf( fields, "ports" ) : ports;
   while ( !ports.empty() ) {
      size_t const comma = ports.find( ',' );
      if ( comma != 0 ) {
         table.ports.emplace_back( ports.substr( 0, comma ) );
      }
      ports.remove_prefix( comma == ports.npos ? ports.size() : comma + 1 );
   }
}

// The table of a rule that can be shown, or null.
Table * AclReader::tableOf( std::string_view rule ) {
   auto const complain = [&]( std::string_view text ) {
      note( std::string( rulePrefix ).append( rule ), text );
      return nullptr;
   };
   size_t const bar = rule.find( '|' );
   if ( bar == rule.npos || bar + 1 == rule.size() ) {
      return complain( "a rule without a name cannot be shown" );
   }
   auto const table = tables_.find( rule.substr( 0, bar ) );
   if ( table == tables_.end() ) {
      return complain( "there is no such table" );
   }
   return table->second->isEgress ? nullptr : table->second.get();
}

void AclReader::readRules() {
   auto const keys = hashes_.keys( SonicDatabase::config, rulePrefix );
   hashes_.fetch( SonicDatabase::config, "", keys, [&]( size_t at, Hashes::Fields const & fields ) {
      std::string_view const key = keys[at].substr( rulePrefix.size() );
      Table * const table = fields.empty() ? nullptr : tableOf( key );
      if ( table ) {
         table->rules.push_back(
            { *table, key, readAclRule( fields, table->family, keys[at], reading_.notes ) } );
      }
   } );
   for ( auto & [name, table] : tables_ ) {
      table->firstRule = rules_.size();
      for ( Rule & rule : table->rules ) {
         rules_.push_back( &rule );
      }
      if ( !table->isEgress ) {
         table->policy.emplace( reading_.state, Vorn::String( name ) );
         table->policy->reserve( std::min( table->rules.size(), Vorn::rulesMax ) );
      }
      // Those of one priority stay in the order of their names.
      std::stable_sort( rules_.begin() + static_cast< ptrdiff_t >( table->firstRule ), rules_.end(),
                        []( Rule const * a, Rule const * b ) {
                           return a->configured.priority > b->configured.priority;
                        } );
   }
}

void AclReader::readStatus() {
   std::vector< std::string_view > names;
   std::vector< Table * > tables;
   for ( auto & [name, table] : tables_ ) {
      names.push_back( name );
      tables.push_back( table.get() );
   }
   hashes_.fetch( SonicDatabase::state, "ACL_TABLE_TABLE|", names,
                  [&]( size_t at, Hashes::Fields const & fields ) {
                     tables[at]->hasStatus = !fields.empty();
                     tables[at]->active = valueOf( fields, "status" ) == activeText;
                  } );
   names.clear();
   std::vector< Rule * > rules;
   for ( Rule * const rule : rules_ ) {
      if ( rule->table.active ) {
         names.push_back( rule->key );
         rules.push_back( rule );
      }
   }
   hashes_.fetch( SonicDatabase::state, "ACL_RULE_TABLE|", names,
                  [&]( size_t at, Hashes::Fields const & fields ) {
                     rules[at]->active = valueOf( fields, "status" ) == activeText;
                  } );
}

// The ids of the rules' counters, in the order of the rules; empty where a rule has none.
std::vector< std::string_view > AclReader::findCounters() {
   // By their names in the map of counters, "T:R" for "T|R", where either name may have a colon:
   // two rules may have the same one.
   TextArena names;
   NameMultimap< size_t > places;
   places.reserve( rules_.size() );
   std::string name;
   for ( size_t at = 0; at < rules_.size(); ++at ) {
      name = rules_[at]->key;
      name[rules_[at]->table.name.size()] = ':';
      places.emplace( names.copy( name ), at );
   }
   std::vector< std::string_view > ids( rules_.size() );
   hashes_.fetch( SonicDatabase::counters, "", { "ACL_COUNTER_RULE_MAP" },
                  [&]( size_t, Hashes::Fields const & fields ) {
                     for ( auto const & [rule, id] : fields ) {
                        auto const [first, last] = places.equal_range( rule );
                        for ( auto place = first; place != last; ++place ) {
                           ids[place->second] = ids_.copy( id );
                        }
                     }
                  } );
   return ids;
}

// A rule is added when its count is there, while the server sends those of the next ones.
void AclReader::addRules() {
   std::vector< std::string_view > const all = findCounters();
   std::vector< std::string_view > ids;
   std::vector< size_t > places;
   for ( size_t at = 0; at < all.size(); ++at ) {
      if ( !all[at].empty() ) {
         ids.push_back( all[at] );
         places.push_back( at );
      }
   }
   hashes_.fetch( SonicDatabase::counters, "COUNTERS:", ids,
                  [&]( size_t at, Hashes::Fields const & fields ) {
                     addRulesBefore( places[at] );
                     readCount( rules_[places[at]]->configured.rule, ids[at], fields );
                  } );
   addRulesBefore( rules_.size() );
}

void AclReader::addRulesBefore( size_t end ) {
   for ( ; added_ < end; ++added_ ) {
      wendo::interrupt::check();
      Rule & rule = *rules_[added_];
      rule.configured.rule.name = Vorn::String( rule.name() );
      rule.table.policy->add( rule.configured.rule );
   }
}

void AclReader::readCount( SwitchRule & rule, std::string_view id, Hashes::Fields const & fields ) {
   constexpr uint64_t numberMax = std::numeric_limits< uint64_t >::max();
   auto const complain = [&]( std::string_view text ) {
      note( std::string( "COUNTERS:" ).append( id ), text );
   };
   auto const count = [&]( std::string_view name ) -> std::optional< uint64_t > {
      std::string_view const text = valueOf( fields, name );
      auto const value = parseNumber( text, numberMax );
      if ( !text.empty() && !value ) {
         complain( std::string( name ) + " \"" + std::string( text ) + "\" is not understood" );
      }
      return value;
   };
   auto const packets = count( "SAI_ACL_COUNTER_ATTR_PACKETS" );
   auto const bytes = count( "SAI_ACL_COUNTER_ATTR_BYTES" );
   if ( !packets && !bytes ) {
      return;
   }
   constexpr std::string_view idPrefix = "oid:";
   auto const number = id.starts_with( idPrefix )
                          ? parseNumber( id.substr( idPrefix.size() ), numberMax )
                          : std::nullopt;
   if ( !number ) {
      complain( "not the id of a counter" );
      return;
   }
   rule.count = bytes ? SwitchRule::Count::named : SwitchRule::Count::own;
   rule.counterId = Umbo::UniqueId( *number );
   rule.total = { packets.value_or( 0 ), bytes.value_or( 0 ) };
}

void AclReader::bind( Table const & table ) {
   State & state = reading_.state;
   if ( table.isControlPlane ) {
      L3::VrfName const vrf( "default" );
      state.bind( vrf, table.policy->name() );
      state.allVrfConfig->vrfIs( vrf );
      return;
   }
   for ( std::string const & port : table.ports ) {
      state.bind( Pelx::IntfId( Vorn::String( port ) ), table.policy->name() );
   }
}

// What STATE_DB says of the table, in short: empty when all is active.
std::string failureOf( Table const & table, std::span< Rule * const > rules ) {
   constexpr size_t named = 3;
   std::string names;
   size_t inactive = 0;
   for ( Rule const * const rule : rules ) {
      if ( !rule->active && ++inactive <= named + 1 ) {
         names.append( names.empty() ? "" : ", " )
            .append( inactive <= named ? rule->name() : std::string_view( "..." ) );
      }
   }
   return !table.active   ? "table is inactive"
          : inactive == 0 ? ""
                          : std::to_string( inactive ) + " of " + std::to_string( rules.size() )
                               + " rules are inactive: " + names;
}

// On each of the table's ports, in every family of its rules.
void AclReader::install( Table & table ) {
   InstalledStatus installed;
   installed.error = Vorn::String(
      failureOf( table, std::span( rules_ ).subspan( table.firstRule, table.rules.size() ) ) );
   installed.status =
      installed.error.empty() ? InstalledStatus::programmed : InstalledStatus::failed;
   std::string const controlPlane = "control-plane";
   if ( table.isControlPlane ) {
      table.ports = { controlPlane };
      reading_.state.l3IntfStatusDir->intfStatusIs(
         Pelx::IntfId( Vorn::String( controlPlane ) ),
         Vorn::create< L3::Intf::Status >( L3::VrfName( "default" ) ) );
   }
   for ( std::string const & port : table.ports ) {
      for ( auto const family : allFamilies ) {
         if ( table.policy->hasFamily( family ) ) {
            table.policy->installedIs( Pelx::IntfId( Vorn::String( port ) ), family, installed );
         }
      }
   }
}

} // namespace

void readAclTables( Hashes & hashes, Reading & reading ) {
   AclReader( hashes, reading ).read();
   State & state = reading.state;
   state.status->byteCountersSupportedIs( true );
   state.policyParamStatus = Vorn::create< TrafficPolicy::TrafficPolicyIntfParamStatus >();
   state.policyParamStatus->ingressCounterGranularityIs(
      TrafficPolicy::CounterGranularity::perPolicy );
}

} // namespace tpcli
