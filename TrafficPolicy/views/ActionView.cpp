#include "TrafficPolicy/views/ActionView.h"

#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/views/CliLabel.h"

namespace TrafficPolicyCli {

namespace {

using PolicyMap::ActionType;
using wendo::JsonKey;

constexpr char heading[] = "Actions: ";
constexpr unsigned headingWidth = sizeof heading - 1;

// For a policy without a committed configuration, which has no rules either.
template< typename Map >
Map const & classActions( PolicyState const & policyState ) {
   static Map const none;
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
   , classActions_( classActions< ClassActions >( policyState ) )
   , snapshots_( policyState.counter().get(), policyState.name() )
   , showBytes_( showBytes ) {}

void ActionWriter::renderActions( Vorn::String const & className,
                                  PolicyMap::ClassMapStatus const & classStatus, unsigned indent ) {
   static constexpr JsonKey actionsKey( "actions" );
   trace.write( 8,
                "void TrafficPolicyCli::renderActions(wendo::RendererV2&, Vorn::String, "
                "const PtrConst&, const PtrConst&, bool, U32) ",
                className, ", ", policyState_.name() );
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
   if ( renderer_.isText() ) {
      renderer_.writeString( wendo::indentation( indent ) );
      renderer_.writeString( heading );
   }
   bool first = true;
   for ( auto const & entry : ( *classAction )->policyAction() ) {
      if ( !ours( entry ) ) {
         break;
      }
      if ( renderer_.isText() && !first ) {
         renderer_.writeString( wendo::indentation( indent + headingWidth ) );
      }
      first = false;
      renderAction( entry.key, entry.value.get(), classStatus );
      renderer_.eol();
   }
   renderer_.endJsonDict();
}

void ActionWriter::renderAction( ActionType type, PolicyMap::Action const * action,
                                 PolicyMap::ClassMapStatus const & classStatus ) {
   static constexpr JsonKey drop( "drop" );
   static constexpr JsonKey log( "log" );
   static constexpr CliLabel setDscp( "Set DSCP" );
   static constexpr CliLabel setTc( "Set Traffic Class" );
   auto const numberAction = [&]( CliLabel const & label, unsigned value ) {
      if ( renderer_.isText() ) {
         renderer_.writeString( label.text() );
         renderer_._addText( " ", value );
      }
      renderer_.addJsonKeyValuePair( label.key(), value );
   };
   switch ( type ) {
   case ActionType::drop:
      renderer_.addFrill( "Drop" );
      renderer_.addJsonKeyValuePair( drop, true );
      break;
   case ActionType::setDscp:
      numberAction( setDscp, recordOf< PolicyMap::SetDscpAction >( action ).value() );
      break;
   case ActionType::setTc:
      numberAction( setTc, recordOf< TrafficPolicy::SetTcAction >( action ).value() );
      break;
   case ActionType::police:
      renderPolice( recordOf< PolicyMap::PoliceAction >( action ) );
      break;
   case ActionType::count:
      renderCount( recordOf< PolicyMap::CountAction >( action ), classStatus );
      break;
   case ActionType::log:
      renderer_.addFrill( "Log" );
      renderer_.addJsonKeyValuePair( log, true );
      break;
   // A new action type must not be shown wrongly.
   default:
      VORN_ASSERT( false && "Unexpected action type" );
   }
}

void ActionWriter::renderPolice( PolicyMap::PoliceAction const & police ) {
   static constexpr JsonKey object( "police" );
   static constexpr JsonKey rate( "rate" );
   static constexpr JsonKey unit( "unit" );
   std::string_view const unitText = PolicyMap::rateUnitText( police.unit() );
   if ( renderer_.isText() ) {
      renderer_._addText( "Police rate ", police.rate() );
      renderer_._addText( " ", unitText );
   }
   renderer_.startJsonObject( object );
   renderer_.addJsonKeyValuePair( rate, police.rate() );
   renderer_.addJsonKeyValuePair( unit, unitText );
   renderer_.endJsonDict();
}

void ActionWriter::renderCount( PolicyMap::CountAction const & count,
                                PolicyMap::ClassMapStatus const & classStatus ) {
   static constexpr JsonKey key( "count" );
   if ( !count.counterName().empty() ) {
      renderNamedCount( count.counterName() );
      return;
   }
   uint64_t const packets = snapshots_.packets( classStatus );
   if ( renderer_.isText() ) {
      renderer_._addText( "Count: ", packets );
      renderer_.writeString( " packets" );
   }
   renderer_.addJsonKeyValuePair( key, packets );
}

void ActionWriter::renderNamedCount( Vorn::String const & name ) {
   static constexpr JsonKey countNamed( "countNamed" );
   static constexpr JsonKey packetCount( "packetCount" );
   static constexpr JsonKey byteCount( "byteCount" );
   auto const * status = policyState_.policyMapStatus()->counterStatus( name );
   renderer_.startJsonObject( countNamed );
   renderer_.startJsonObject( name );
   if ( status ) {
      uint64_t const packets =
         getNamedPacketCount( policyState_.counter(), *status, policyState_.name() );
      if ( renderer_.isText() ) {
         renderer_._addText( "Count: ", name );
         renderer_._addText( ": ", packets );
         renderer_.writeString( " packets" );
      }
      renderer_.addJsonKeyValuePair( packetCount, packets );
      if ( showBytes_ ) {
         uint64_t const bytes =
            getNamedByteCount( policyState_.counter(), *status, policyState_.name() );
         renderer_.addText( " ", bytes );
         renderer_.addFrill( " bytes" );
         renderer_.addJsonKeyValuePair( byteCount, bytes );
      }
   } else {
      renderInactive( name );
   }
   renderer_.endJsonDict();
   renderer_.endJsonDict();
}

// The hardware side does not know the counter: that is not a count of zero.
void ActionWriter::renderInactive( Vorn::String const & name ) {
   static constexpr JsonKey undefined( "undefined" );
   if ( renderer_.isText() ) {
      renderer_._addText( "Count: ", name );
      renderer_._addText( " (counter '", name );
      renderer_.writeString( "' is inactive because it has not been declared)" );
   }
   renderer_.addJsonKeyValuePair( undefined, true );
}

} // namespace TrafficPolicyCli
