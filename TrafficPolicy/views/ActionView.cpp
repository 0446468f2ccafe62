#include "TrafficPolicy/views/ActionView.h"

#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/views/CliLabel.h"
#include "TrafficPolicy/views/ListWriters.h"

namespace TrafficPolicyCli {

namespace {

using PolicyMap::ActionType;
using wendo::JsonKey;
using wendo::JsonMember;

constexpr PlainText heading( "Actions: " );

// For a policy without a committed configuration, which has no rules either.
PolicyMap::ClassActions const & classActions( PolicyState const & policyState ) {
   static PolicyMap::ClassActions const none;
   auto const & config = policyState.policyMapConfig();
   return config && config->currCfg() ? config->currCfg()->classAction() : none;
}

// The record as the class that its type names; anything else is a broken invariant.
template< typename Record >
Record const & recordOf( PolicyMap::Action const * action ) {
   auto const * record = PolicyMap::actionAs< Record >( action );
   VORN_ASSERT( record );
   return *record;
}

} // namespace

ActionWriter::ActionWriter( wendo::RendererV2 & renderer, PolicyState const & policyState,
                            bool showBytes )
   : renderer_( renderer )
   , policyState_( policyState )
   , classActions_( classActions( policyState ) )
   , snapshots_( policyState.counter().get(), policyState.name() )
   , showBytes_( showBytes ) {}

void ActionWriter::renderActions( Vorn::String const & className,
                                  PolicyMap::ClassMapStatus const & classStatus, unsigned indent ) {
   static constexpr JsonKey actionsKey( "actions" );
   trace.write( 8,
                "void TrafficPolicyCli::renderActions(wendo::RendererV2&, Vorn::String, "
                "const PtrConst&, const PtrConst&, bool, U32) ",
                className, ", ", policyState_.name() );
   snapshots_.nextRule();
   auto const * classAction = classActions_.find( className );
   auto const ours = []( auto const & entry ) {
      return static_cast< uint32_t >( entry.key ) <= PolicyMap::actionTypeMax;
   };
   // By ascending type: when the first belongs to another feature, all do.
   if ( !classAction || !*classAction || !( *classAction )->policyAction()
        || !ours( *( *classAction )->policyAction().begin() ) ) {
      trace.write( 8, "No actions mapped to ", className );
      return;
   }
   auto const object = renderer_.object( actionsKey );
   ListLines lines( heading, indent );
   for ( auto const & entry : ( *classAction )->policyAction() ) {
      if ( !ours( entry ) ) {
         break;
      }
      renderAction( lines.next(), entry.key, entry.value.get(), classStatus );
   }
}

void ActionWriter::renderAction( LineBegin begin, ActionType type, PolicyMap::Action const * action,
                                 PolicyMap::ClassMapStatus const & classStatus ) {
   static constexpr JsonKey drop( "drop" );
   static constexpr JsonKey log( "log" );
   static constexpr CliLabel setDscp( "Set DSCP" );
   static constexpr CliLabel setTc( "Set Traffic Class" );
   auto const flagAction = [&]( PlainText const & text, JsonKey const & key ) {
      renderer_.addJsonKeyValuePair( key, true );
      renderer_.text( begin, text, '\n' );
   };
   auto const numberAction = [&]( CliLabel const & label, unsigned value ) {
      renderer_.addJsonKeyValuePair( label.key(), value );
      renderer_.text( begin, label.text(), ' ', value, '\n' );
   };
   // Without a default, so that the compiler finds an action type that is missing here.
   switch ( type ) {
   case ActionType::drop:
      return flagAction( "Drop", drop );
   case ActionType::setDscp:
      return numberAction( setDscp, recordOf< PolicyMap::SetDscpAction >( action ).value() );
   case ActionType::setTc:
      return numberAction( setTc, recordOf< TrafficPolicy::SetTcAction >( action ).value() );
   case ActionType::police:
      return renderPolice( begin, recordOf< PolicyMap::PoliceAction >( action ) );
   case ActionType::count:
      return renderCount( begin, recordOf< PolicyMap::CountAction >( action ), classStatus );
   case ActionType::log:
      return flagAction( "Log", log );
   }
   // A type that the enumeration lacks must not be shown wrongly.
   VORN_ASSERT( false && "Unexpected action type" );
}

void ActionWriter::renderPolice( LineBegin begin, PolicyMap::PoliceAction const & police ) {
   static constexpr JsonKey object( "police" );
   static constexpr JsonKey rate( "rate" );
   static constexpr JsonKey unit( "unit" );
   PlainText const & unitText = PolicyMap::rateUnitText( police.unit() );
   if ( unitText.empty() ) {
      trace.write( 1, "Unknown rate unit: ", static_cast< unsigned >( police.unit() ) );
   }
   renderer_.addJsonObject( object, JsonMember{ rate, police.rate() },
                            JsonMember{ unit, unitText } );
   renderer_.text( begin, "Police rate ", police.rate(), ' ', unitText, '\n' );
}

void ActionWriter::renderCount( LineBegin begin, PolicyMap::CountAction const & count,
                                PolicyMap::ClassMapStatus const & classStatus ) {
   static constexpr JsonKey key( "count" );
   if ( !count.counterName().empty() ) {
      renderNamedCount( begin, count.counterName() );
      return;
   }
   uint64_t const packets = snapshots_.packets( classStatus );
   renderer_.addJsonKeyValuePair( key, packets );
   renderer_.text( begin, "Count: ", packets, " packets\n" );
}

void ActionWriter::renderNamedCount( LineBegin begin, Vorn::String const & name ) {
   static constexpr JsonKey countNamed( "countNamed" );
   static constexpr JsonKey packetCount( "packetCount" );
   static constexpr JsonKey byteCount( "byteCount" );
   auto const object = renderer_.object( countNamed );
   auto const & status = namedCounterStatus( policyState_, name );
   if ( !status ) {
      renderInactive( begin, name );
      return;
   }
   auto const & store = policyState_.counter();
   uint64_t const packets = getNamedPacketCount( store, status, policyState_.name() );
   if ( !showBytes_ ) {
      renderer_.addJsonObject( name, JsonMember{ packetCount, packets } );
      renderer_.text( begin, "Count: ", name, ": ", packets, " packets\n" );
      return;
   }
   uint64_t const bytes = getNamedByteCount( store, status, policyState_.name() );
   renderer_.addJsonObject( name, JsonMember{ packetCount, packets },
                            JsonMember{ byteCount, bytes } );
   renderer_.text( begin, "Count: ", name, ": ", packets, " packets ", bytes, " bytes\n" );
}

// The hardware side does not have the counter: that is not a count of zero.
void ActionWriter::renderInactive( LineBegin begin, Vorn::String const & name ) {
   static constexpr JsonKey undefined( "undefined" );
   renderer_.addJsonObject( name, JsonMember{ undefined, true } );
   renderer_.text( begin, "Count: ", name, " (counter '", name,
                   "' is inactive because it has not been declared)\n" );
}

} // namespace TrafficPolicyCli
