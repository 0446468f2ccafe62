#include "bench/Cases.h"

namespace Bench {

namespace {

using TrafficPolicyCli::ShowTrafficPolicyBase;

// The options of the show commands, as flags of the factories.
struct Kind {
   char const * name;
   bool summary = false;
   bool errors = false;
   bool detail = false;
   bool counters = false;
   bool perInterface = false;
   bool afterClear = false; // counts are relative to a snapshot of every counter
};

constexpr Kind kinds[] = {
   { .name = "detail", .detail = true },
   { .name = "summary", .summary = true },
   { .name = "errors", .errors = true },
   { .name = "counters", .counters = true },
   { .name = "counters-per-interface", .counters = true, .perInterface = true },
   { .name = "detail-after-clear", .detail = true, .afterClear = true },
};

struct Format {
   char const * name;
   unsigned number;
};

constexpr Format formats[] = { { "text", 1 }, { "json", 2 } };

enum class Side { cpu, interface };

Vorn::Ptr< ShowTrafficPolicyBase > makeShow( Side side, Kind const & kind, World const & world ) {
   Inputs const & inputs = world.inputs;
   Vorn::Ptr< TrafficPolicy::Counter const > counter = inputs.counter;
   if ( kind.afterClear ) {
      counter = world.cleared;
   }
   if ( side == Side::cpu ) {
      return TrafficPolicyCli::showTrafficPolicyCpuFactory(
         inputs.config, inputs.status, counter, "", kind.summary, kind.errors, kind.detail,
         kind.counters, kind.perInterface, inputs.vrfConfig, inputs.allVrfConfig, inputs.l3Status );
   }
   return TrafficPolicyCli::showTrafficPolicyInterfaceFactory(
      inputs.config, inputs.status, counter, "", kind.summary, kind.errors, kind.detail,
      kind.counters, kind.perInterface, inputs.intfConfig, inputs.intfParamStatus );
}

class ShowCommand : public Command {
public:
   ShowCommand( Vorn::Ptr< ShowTrafficPolicyBase > show, unsigned format )
      : show_( std::move( show ) )
      , format_( format ) {}
   void run( int fd ) override { show_->render( static_cast< unsigned >( fd ), format_, 1 ); }

private:
   Vorn::Ptr< ShowTrafficPolicyBase > show_;
   unsigned format_;
};

class CachingCommand : public Command {
public:
   explicit CachingCommand( Vorn::Ptr< ShowTrafficPolicyBase > show )
      : show_( std::move( show ) ) {}
   void run( int ) override { show_->cachePoliciesState(); }

private:
   Vorn::Ptr< ShowTrafficPolicyBase > show_;
};

class ClearCommand : public Command {
public:
   ClearCommand( Inputs const & inputs, Vorn::Ptr< TrafficPolicy::Counter > const & store )
      : clear_( TrafficPolicyCli::trafficPolicyCounterFactory( inputs.status, store ) ) {}
   void run( int ) override { clear_->clearCounter(); }

private:
   Vorn::Ptr< TrafficPolicyCli::TrafficPolicyCounter > clear_;
};

void addSide( std::vector< Case > & cases, Side side, std::string const & sideName ) {
   for ( Kind const & kind : kinds ) {
      for ( Format const & format : formats ) {
         Case show;
         show.name = sideName + "/" + kind.name + "/" + format.name;
         show.command = [=, &kind]( World const & world ) {
            return std::make_unique< ShowCommand >( makeShow( side, kind, world ), format.number );
         };
         show.reference = kind.detail;
         show.same = side == Side::cpu && kind.detail && !kind.afterClear && format.number == 2;
         cases.push_back( std::move( show ) );
      }
   }
   cases.push_back( { .name = sideName + "/caching",
                      .command =
                         [=]( World const & world ) {
                            return std::make_unique< CachingCommand >(
                               makeShow( side, kinds[0], world ) );
                         },
                      .writes = false } );
}

} // namespace

World::World( std::vector< Filter > const & filters, size_t count, BuildOptions const & options )
   : rules( makeRules( filters, count ) )
   , inputs( buildPolicy( rules, options ) )
   , cleared( Vorn::create< TrafficPolicy::Counter >() ) {
   ClearCommand( inputs, cleared ).run( -1 );
}

std::vector< Case > allCases() {
   std::vector< Case > cases;
   addSide( cases, Side::cpu, "cpu" );
   addSide( cases, Side::interface, "interface" );
   cases.push_back( { .name = "clear/first",
                      .command =
                         []( World const & world ) {
                            return std::make_unique< ClearCommand >(
                               world.inputs, Vorn::create< TrafficPolicy::Counter >() );
                         },
                      .writes = false } );
   cases.push_back( { .name = "clear/again",
                      .command =
                         []( World const & world ) {
                            return std::make_unique< ClearCommand >( world.inputs, world.cleared );
                         },
                      .writes = false } );
   return cases;
}

} // namespace Bench
