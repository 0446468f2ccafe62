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
   // By ascending type: when the first is none of ours, no other is.
   if ( !classAction || !( *classAction )->policyAction()
        || !ours( *( *classAction )->policyAction().begin() ) ) {
      trace.write( 8, "No actions mapped to ", className );
      return;
   }
   renderer_.startJsonObject( actionsKey );
   ListLines lines( heading, indent );
   for ( auto const & entry : ( *classAction )->policyAction() ) {
      if ( !ours( entry ) ) {
         break;
      }
      renderAction( lines.next(), entry.key, entry.value.get(), classStatus );
   }
   renderer_.endJsonDict();
}

void ActionWriter::renderAction( LineBegin begin, ActionType type, PolicyMap::Action const * action,
                                 PolicyMap::ClassMapStatus const & classStatus ) {
   static constexpr JsonKey drop( "drop" );
   static constexpr JsonKey log( "log" );
   static constexpr CliLabel setDscp( "Set DSCP" );
   static constexpr CliLabel setTc( "Set Traffic Class" );
   auto const flagAction = [&]( PlainText const & text, JsonKey const & key ) {
      if ( renderer_.isJson() ) {
         renderer_._addJsonKeyValuePair( key, true );
      } else if ( renderer_.isText() ) {
         renderer_.write( begin, text, '\n' );
      }
   };
   auto const numberAction = [&]( CliLabel const & label, unsigned value ) {
      if ( renderer_.isJson() ) {
         renderer_._addJsonKeyValuePair( label.key(), value );
      } else if ( renderer_.isText() ) {
         renderer_.write( begin, label.text(), ' ', value, '\n' );
      }
   };
   switch ( type ) {
   case ActionType::drop:
      flagAction( "Drop", drop );
      break;
   case ActionType::setDscp:
      numberAction( setDscp, recordOf< PolicyMap::SetDscpAction >( action ).value() );
      break;
   case ActionType::setTc:
      numberAction( setTc, recordOf< TrafficPolicy::SetTcAction >( action ).value() );
      break;
   case ActionType::police:
      renderPolice( begin, recordOf< PolicyMap::PoliceAction >( action ) );
      break;
   case ActionType::count:
      renderCount( begin, recordOf< PolicyMap::CountAction >( action ), classStatus );
      break;
   case ActionType::log:
      flagAction( "Log", log );
      break;
   // A new action type must not be shown wrongly.
   default:
      VORN_ASSERT( false && "Unexpected action type" );
   }
}

void ActionWriter::renderPolice( LineBegin begin, PolicyMap::PoliceAction const & police ) {
   static constexpr JsonKey object( "police" );
   static constexpr JsonKey rate( "rate" );
   static constexpr JsonKey unit( "unit" );
   PlainText const & unitText = PolicyMap::rateUnitText( police.unit() );
   if ( renderer_.isJson() ) {
      renderer_._addJsonObject( object, JsonMember{ rate, police.rate() },
                                JsonMember{ unit, unitText } );
   } else if ( renderer_.isText() ) {
      renderer_.write( begin, "Police rate ", police.rate(), ' ', unitText, '\n' );
   }
}

void ActionWriter::renderCount( LineBegin begin, PolicyMap::CountAction const & count,
                                PolicyMap::ClassMapStatus const & classStatus ) {
   static constexpr JsonKey key( "count" );
   if ( !count.counterName().empty() ) {
      renderNamedCount( begin, count.counterName() );
      return;
   }
   uint64_t const packets = snapshots_.packets( classStatus );
   if ( renderer_.isJson() ) {
      renderer_._addJsonKeyValuePair( key, packets );
   } else if ( renderer_.isText() ) {
      renderer_.write( begin, "Count: ", packets, " packets\n" );
   }
}

void ActionWriter::renderNamedCount( LineBegin begin, Vorn::String const & name ) {
   static constexpr JsonKey countNamed( "countNamed" );
   static constexpr JsonKey packetCount( "packetCount" );
   static constexpr JsonKey byteCount( "byteCount" );
   auto const * status = policyState_.policyMapStatus()->counterStatus( name );
   if ( !status ) {
      renderInactive( begin, name );
      return;
   }
   auto const & store = policyState_.counter();
   uint64_t const packets = getNamedPacketCount( store, *status, policyState_.name() );
   uint64_t const bytes = showBytes_ ? getNamedByteCount( store, *status, policyState_.name() ) : 0;
   if ( renderer_.isJson() ) {
      renderer_._startJsonObject( countNamed );
      if ( showBytes_ ) {
         renderer_._addJsonObject( name, JsonMember{ packetCount, packets },
                                   JsonMember{ byteCount, bytes } );
      } else {
         renderer_._addJsonObject( name, JsonMember{ packetCount, packets } );
      }
      renderer_.endJsonDict();
   } else if ( renderer_.isText() ) {
      renderer_.write( begin, "Count: ", name, ": ", packets, " packets" );
      if ( showBytes_ ) {
         renderer_.write( ' ', bytes, " bytes" );
      }
      renderer_.eol();
   }
}

// The hardware side does not know the counter: that is not a count of zero.
void ActionWriter::renderInactive( LineBegin begin, Vorn::String const & name ) {
   static constexpr JsonKey countNamed( "countNamed" );
   static constexpr JsonKey undefined( "undefined" );
   if ( renderer_.isJson() ) {
      renderer_._startJsonObject( countNamed );
      renderer_._addJsonObject( name, JsonMember{ undefined, true } );
      renderer_.endJsonDict();
   } else if ( renderer_.isText() ) {
      renderer_.write( begin, "Count: ", name, " (counter '", name,
                       "' is inactive because it has not been declared)\n" );
   }
}

} // namespace TrafficPolicyCli
