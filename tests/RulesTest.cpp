// Rules and their lists of conditions: random policies, filled in no order, against a plain model
// of both replies.

#include "TrafficPolicy/TrafficPolicyShowCliHelper.h"
#include "tests/Support.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace {

using namespace Classification;
using PolicyMap::ClassMapMatchOption;
using Vorn::create;
using Vorn::Ptr;

using Range = std::pair< uint32_t, uint32_t >;
using Ranges = std::set< Range >;
using Texts = std::set< std::string >;

struct Protocol {
   Ranges sourcePorts;
   Texts destinationSets;

   bool isPlain() const { return sourcePorts.empty() && destinationSets.empty(); }
};

struct Rule {
   std::string name;
   bool isIp6 = false;
   bool hasConditions = false;
   std::set< Pelx::IpGenPrefix > sources;
   std::map< Range, Protocol > protocols;
   Ranges ttls;
   std::optional< uint64_t > packets; // where an action counts them
};

// The model: the rules of both replies.
class Model {
public:
   std::string text;
   std::string json; // members or elements, each with a comma before it

   void add( Rule const & rule ) {
      std::string const family = rule.isIp6 ? "ipv6" : "ipv4";
      text += "      match " + rule.name + ' ' + family + '\n';
      json += ',' + object( [&] {
                 member( "ruleString", '"' + rule.name + '"' );
                 member( "matchOption", '"' + family + '"' );
                 if ( rule.hasConditions ) {
                    member( "matches", object( [&] { addConditions( rule ); } ) );
                 }
                 if ( rule.packets ) {
                    std::string const packets = std::to_string( *rule.packets );
                    text += "         Actions: Count: " + packets + " packets\n";
                    member( "actions", object( [&] { member( "count", packets ); } ) );
                 }
              } );
   }

private:
   void addConditions( Rule const & rule ) {
      std::vector< std::string > sources;
      for ( Pelx::IpGenPrefix const & prefix : rule.sources ) {
         char buffer[Pelx::IpGenPrefix::textMax + 1];
         sources.emplace_back( +buffer, Pelx::to_stringb( buffer, sizeof buffer, prefix ) );
      }
      list( "Source prefix", "srcPrefixes", sources, quoted( sources ), 9 );
      if ( !rule.protocols.empty() ) {
         addProtocols( rule );
      }
      ranges( "TTL", "ttls", rule.ttls, 9 );
   }
   void addProtocols( Rule const & rule ) {
      bool const allPlain =
         std::all_of( rule.protocols.begin(), rule.protocols.end(),
                      []( auto const & entry ) { return entry.second.isPlain(); } );
      std::string elements;
      std::string label = "         Protocol: ";
      for ( auto const & [range, protocol] : rule.protocols ) {
         text += label + rangeText( range ) + '\n';
         label = allPlain ? std::string( label.size(), ' ' ) : label;
         elements += ',' + object( [&, &key = range, &conditions = protocol] {
                        member( "protocolRange", rangeJson( key ) );
                        ranges( "Source port", "srcPorts", conditions.sourcePorts, 12 );
                        fieldSets( "Destination port", "destL4PortFieldSets",
                                   conditions.destinationSets, 12 );
                     } );
      }
      member( "protocols", '[' + elements.substr( 1 ) + ']' );
   }

   // An object of the members that the function adds.
   template< typename Function >
   std::string object( Function const & function ) {
      std::string const before = std::exchange( json, "" );
      function();
      std::string const members = std::exchange( json, before );
      return '{' + members.substr( members.empty() ? 0 : 1 ) + '}';
   }
   void member( char const * key, std::string const & value ) {
      json.append( ",\"" ).append( key ).append( "\":" ).append( value );
   }
   void list( std::string const & label, char const * key,
              std::vector< std::string > const & values,
              std::vector< std::string > const & elements, size_t indent ) {
      if ( values.empty() ) {
         return;
      }
      std::string column = std::string( indent, ' ' ) + label + ": ";
      std::string joined;
      for ( size_t i = 0; i < values.size(); ++i ) {
         text += column + values[i] + '\n';
         column.assign( column.size(), ' ' );
         joined += ( i ? "," : "" ) + elements[i];
      }
      member( key, '[' + joined + ']' );
   }
   void ranges( char const * label, char const * key, Ranges const & all, size_t indent ) {
      std::vector< std::string > values;
      std::vector< std::string > elements;
      for ( Range const & range : all ) {
         values.push_back( rangeText( range ) );
         elements.push_back( rangeJson( range ) );
      }
      list( label, key, values, elements, indent );
   }
   void fieldSets( char const * label, char const * key, Texts const & all, size_t indent ) {
      std::vector< std::string > values;
      for ( std::string const & name : all ) {
         values.push_back( "field-set " + name );
      }
      list( label, key, values, quoted( { all.begin(), all.end() } ), indent );
   }
   static std::vector< std::string > quoted( std::vector< std::string > texts ) {
      for ( std::string & text : texts ) {
         text = '"' + text + '"';
      }
      return texts;
   }
   static std::string rangeText( Range const & range ) {
      return std::to_string( range.first )
             + ( range.first == range.second ? "" : '-' + std::to_string( range.second ) );
   }
   static std::string rangeJson( Range const & range ) {
      return "{\"low\":" + std::to_string( range.first )
             + ",\"high\":" + std::to_string( range.second ) + '}';
   }
};

// Random rules, entered into the records and the model.
class Generator {
public:
   explicit Generator( unsigned seed )
      : random_( seed ) {
      config_->policyMapConfigIs( "P", policyConfig_ );
      policyConfig_->currCfgIs( policy_ );
      status_->policyMapStatusIs( "P", policyStatus_ );
      unsigned const rules = random_.below( 20 );
      std::vector< uint32_t > names;
      std::map< uint32_t, uint32_t > bySequence;
      for ( unsigned i = 0; i < rules; ++i ) {
         names.push_back( i );
         bySequence[static_cast< uint32_t >( random_.ofAnySize() )] = i;
      }
      // Each record has its own order, the sequence too.
      for ( uint32_t const name : shuffled( names ) ) {
         addStatus( name );
      }
      for ( uint32_t const name : shuffled( names ) ) {
         addMatch( name );
      }
      for ( uint32_t const name : shuffled( names ) ) {
         if ( rules_[name].packets ) {
            auto const actions = create< PolicyMap::ClassAction >();
            actions->policyActionIs( PolicyMap::ActionType::count,
                                     create< PolicyMap::CountAction >( Vorn::String() ) );
            policy_->classActionIs( Vorn::String( rules_[name].name ), actions );
         }
      }
      std::vector< std::pair< uint32_t, uint32_t > > sequence( bySequence.begin(),
                                                               bySequence.end() );
      for ( auto const & [number, name] : shuffled( sequence ) ) {
         policy_->classSequenceIs( number, Vorn::String( rules_[name].name ) );
      }
      for ( auto const & [number, name] : bySequence ) {
         if ( installed_.contains( name ) ) {
            model_.add( rules_[name] );
            ++shown_;
         }
      }
   }
   std::string text() const {
      return "Traffic policy P\n   Configured on interfaces: \n"
             "   Applied on interfaces for IPv4 traffic: \n"
             "   Applied on interfaces for IPv6 traffic: \n   Total number of rules configured: "
             + std::to_string( shown_ ) + '\n' + model_.text;
   }
   std::string json() const {
      return "{\"trafficPolicies\":{\"P\":{\"configuredIntfs\":[],\"ipv4AppliedIntfs\":[],"
             "\"ipv6AppliedIntfs\":[],\"rules\":["
             + model_.json.substr( model_.json.empty() ? 0 : 1 ) + "]}}}\n";
   }
   std::string reply( unsigned format ) const {
      auto const show = TrafficPolicyCli::showTrafficPolicyInterfaceFactory(
         config_, status_, nullptr, "", false, false, false, false, false,
         create< PolicyMap::IntfConfig >(), nullptr );
      return test::reply( *show, format );
   }

private:
   template< typename Element >
   std::vector< Element > shuffled( std::vector< Element > elements ) {
      for ( size_t i = 1; i < elements.size() && !random_.oneIn( 8 ); ++i ) {
         std::swap( elements[i], elements[random_.below( static_cast< unsigned >( i + 1 ) )] );
      }
      return elements;
   }
   void addStatus( uint32_t number ) {
      Rule & rule = rules_[number];
      rule.name = "rule-" + std::to_string( number * 7919 % 1000 );
      rule.isIp6 = random_.oneIn( 2 );
      if ( random_.oneIn( 10 ) ) {
         return; // not installed: not shown
      }
      installed_.insert( number );
      auto const status = create< PolicyMap::ClassMapStatus >( Vorn::String( rule.name ) );
      status->matchIs( ClassMapMatchOption{ rule.isIp6 } );
      if ( random_.oneIn( 2 ) ) {
         rule.packets = random_.ofAnySize();
         status->packetCountIs( *rule.packets );
      }
      policyStatus_->cmapIs( Vorn::String( rule.name ), status );
   }
   void addMatch( uint32_t number ) {
      Rule & rule = rules_[number];
      rule.hasConditions = !random_.oneIn( 8 );
      if ( !rule.hasConditions && random_.oneIn( 2 ) ) {
         return;
      }
      auto const family = ClassMapMatchOption{ rule.isIp6 };
      auto const config = create< PolicyMap::ClassMapSubConfig >();
      auto const match = create< PolicyMap::ClassMapMatch >( family );
      match->structuredFilterIs( rule.hasConditions ? filter( rule ) : nullptr );
      config->matchIs( family, match );
      policy_->rawClassMapIs( Vorn::String( rule.name ), config );
   }
   Ptr< StructuredFilter const > filter( Rule & rule ) {
      auto const filter = create< StructuredFilter >();
      times( [&] {
         Pelx::IpGenPrefix const prefix( Pelx::Ip4Prefix{
            random_.below( 9 ) << 28, static_cast< uint8_t >( 4 + random_.below( 4 ) ) } );
         ASSERT_EQ( filter->sourcesIs( prefix ), rule.sources.insert( prefix ).second );
      } );
      times( [&] { addProtocol( *filter, rule ); } );
      fill( rule.ttls, *filter, &StructuredFilter::ttlIs );
      return filter;
   }
   void addProtocol( StructuredFilter & filter, Rule & rule ) {
      auto const protocol = range< ProtocolRange >();
      auto const field = create< ProtoField >();
      Protocol & conditions = rule.protocols[{ protocol.low, protocol.high }] = {};
      if ( random_.oneIn( 4 ) ) {
         fill( conditions.sourcePorts, *field, &ProtoField::sportIs );
         fill( conditions.destinationSets, *field, &ProtoField::dportFieldSetIs );
      }
      filter.protocolsIs( protocol, field );
   }

   // From none to more than a few, none half of the time.
   template< typename Function >
   void times( Function const & function ) {
      for ( unsigned left = random_.oneIn( 2 ) ? 0 : random_.below( 14 ); left > 0; --left ) {
         function();
      }
   }
   // Of numbers that no protocol's name stands for.
   template< typename R >
   R range() {
      R range;
      range.low = 150 + random_.below( 20 ) * ( random_.oneIn( 5 ) ? 3000 : 1 );
      range.high = range.low + ( random_.oneIn( 2 ) ? 0 : random_.below( 4 ) );
      return range;
   }
   template< typename Record, typename R >
   void fill( Ranges & model, Record & record, bool ( Record::*insert )( R const & ) ) {
      times( [&] {
         R const range = this->range< R >();
         ASSERT_EQ( ( record.*insert )( range ), model.emplace( range.low, range.high ).second );
      } );
   }
   template< typename Record >
   void fill( Texts & model, Record & record, bool ( Record::*insert )( Vorn::String const & ) ) {
      times( [&] {
         std::string const name = "set " + std::to_string( random_.below( 30 ) );
         ASSERT_EQ( ( record.*insert )( Vorn::String( name ) ), model.insert( name ).second );
      } );
   }

   test::Random random_;
   std::map< uint32_t, Rule > rules_;
   std::set< uint32_t > installed_;
   Model model_;
   unsigned shown_ = 0;
   Ptr< TrafficPolicy::TrafficPolicyConfig > config_ =
      create< TrafficPolicy::TrafficPolicyConfig >();
   Ptr< TrafficPolicy::Status > status_ = create< TrafficPolicy::Status >();
   Ptr< PolicyMap::PolicyMapConfig > policyConfig_ = create< PolicyMap::PolicyMapConfig >();
   Ptr< PolicyMap::PolicyMapSubConfig > policy_ = create< PolicyMap::PolicyMapSubConfig >( "P" );
   Ptr< PolicyMap::PolicyMapStatus > policyStatus_ = create< PolicyMap::PolicyMapStatus >( "P" );
};

TEST( Rules, AreShownInOrderWithTheirConditions ) {
   for ( unsigned seed = 0; seed < 400; ++seed ) {
      Generator const generator( seed );
      ASSERT_EQ( generator.reply( 1 ), generator.text() ) << "seed " << seed;
      ASSERT_EQ( generator.reply( 2 ), generator.json() ) << "seed " << seed;
   }
}

} // namespace
