// Both policy views: one walk over the policies, over the binding and the labels of a side.

#include "TrafficPolicy/views/PolicyView.h"

#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/platform/vorn/Prefetch.h"
#include "TrafficPolicy/views/ActionView.h"
#include "TrafficPolicy/views/MatchView.h"
#include "TrafficPolicy/views/NamedCounterList.h"
#include "TrafficPolicy/views/PolicyViewLabels.h"
#include "TrafficPolicy/views/Reply.h"

#include <span>

namespace TrafficPolicyCli {

namespace {

using wendo::indentation;
using wendo::JsonKey;
using wendo::JsonMember;
using wendo::RendererV2;

constexpr unsigned listIndent = 3;
constexpr unsigned ruleIndent = 6;
constexpr unsigned namesShown = 3; // in text, unless the detail is asked for

constexpr char allVrfsNote[] = "NOTE: \"vrf all\" option is applied on CPU for VRFs which are not "
                               "attached to a specific traffic policy\n";
constexpr char undefinedCounterWarning[] =
   "WARNING: One or more match rules are using an undefined named counter. Hits against these rule "
   "will not be counted until counter is defined";

// Text cuts a list that has more names than shown, JSON has them all. A list that does not exist is
// an empty one.
template< typename Binding >
void renderListEntry( RendererV2 & renderer, ListLabel const & label,
                      typename Binding::Names const * names, bool showAll ) {
   renderer.startJsonList( label.key );
   if ( renderer.isText() ) {
      renderer.write( indentation( listIndent ), label.text );
   }
   if ( names ) {
      size_t count = 0;
      for ( auto const & [name, member] : *names ) {
         renderer.addJsonKeyValuePair( wendo::listElement, Binding::string( name ) );
         ++count;
         if ( count <= namesShown || showAll ) {
            renderer.addFrill( Binding::string( name ).view() );
            renderer.addFrill( count < names->size() ? ", " : "" );
         } else if ( count == namesShown + 1 ) {
            renderer.addFrill( "..." );
         }
      }
   }
   renderer.endJsonList();
   renderer.eol();
}

// One line per binding that failed: its name and the error text. Nothing for a family without
// failures, not even the JSON key.
template< typename Binding >
void renderInstallErrors( RendererV2 & renderer, JsonKey const & key,
                          typename Binding::State const & state, ClassMapMatchOption option,
                          unsigned indent ) {
   trace.write( 8, "", policyViewLabels< Binding >.errorsSignature, key.name(), ", ", option );
   auto const * errors = Binding::errors( state, option );
   if ( !errors ) {
      trace.write( 8, "No installation errors to render" );
      return;
   }
   renderer.startJsonList( key );
   for ( auto const & [name, text] : *errors ) {
      std::string line( Binding::string( name ).view() );
      line.append( " (" ).append( text.view() ).append( ")" );
      renderer.addJsonKeyValuePair( wendo::listElement, std::string_view( line ) );
      if ( renderer.isText() ) {
         renderer.write( indentation( indent ), std::string_view( line ), '\n' );
      }
   }
   renderer.endJsonList();
}

void renderRulesModel( RendererV2 & renderer, unsigned ruleCount ) {
   if ( renderer.isText() ) {
      renderer.write( indentation( listIndent ), "Total number of rules configured: ", ruleCount,
                      '\n' );
   }
}

template< typename Binding >
void renderCommonErrorsModel( RendererV2 & renderer, typename Binding::State const & state ) {
   auto const * policyState = &state;
   VORN_ASSERT( !policyState->detail() );
   for ( FamilyLabels const & family : policyViewLabels< Binding >.families ) {
      renderListEntry< Binding >( renderer, family.failed, Binding::failed( state, family.option ),
                                  state.detail() );
      renderInstallErrors< Binding >( renderer, family.errors, state, family.option,
                                      state.indentCountPerLevel() + 3 );
   }
}

template< typename Binding >
void renderCommonModel( RendererV2 & renderer, typename Binding::State const & state ) {
   auto const & labels = policyViewLabels< Binding >;
   renderListEntry< Binding >( renderer, labels.configured, &Binding::configured( state ),
                               state.detail() );
   for ( FamilyLabels const & family : labels.families ) {
      renderListEntry< Binding >( renderer, family.applied,
                                  Binding::applied( state, family.option ), state.detail() );
   }
   renderRulesModel( renderer, state.ruleCount() );
}

// Opens the rule's object in JSON.
void renderRuleSummary( RendererV2 & renderer, Vorn::String const & ruleName,
                        ClassMapMatchOption option ) {
   static constexpr JsonKey ruleString( "ruleString" );
   static constexpr JsonKey matchOption( "matchOption" );
   if ( renderer.isJson() ) {
      renderer._startJsonListEntry(
         JsonMember{ ruleString, ruleName },
         JsonMember{ matchOption, PolicyMap::matchOptionName( option ) } );
   } else if ( renderer.isText() ) {
      renderer.write( indentation( ruleIndent ), "match ", ruleName, ' ',
                      PolicyMap::matchOptionName( option ), '\n' );
   }
}

// The rules of a policy, in order.
struct Rules {
   explicit Rules( PolicyState const & state )
      : matches( counted( state.classMapConfig(), state.ruleCount() ) )
      , statuses( counted( state.classMapStatus(), state.ruleCount() ) ) {}

   std::span< Vorn::Ptr< PolicyMap::ClassMapMatch const > const > matches;
   std::span< Vorn::Ptr< PolicyMap::ClassMapStatus const > const > statuses;

private:
   template< typename Record >
   static std::span< Record const > counted( Vorn::IndexedArray< Record > const & array,
                                             uint32_t ruleCount ) {
      VORN_ASSERT( ruleCount <= array.size() );
      return array.slots().first( ruleCount );
   }
};

// Asks for the match and the status of rules to come, and for the name that hangs under the status.
// For a summary: while a rule is written in full, the processor fetches the next ones by itself.
void prefetchRule( Rules const & rules, size_t rule ) {
   constexpr size_t far = 6; // rules
   constexpr size_t near = 3;
   if ( rule + far < rules.statuses.size() ) {
      Vorn::prefetch( rules.matches[rule + far].get() );
      Vorn::prefetch( rules.statuses[rule + far].get() );
      if ( auto const & status = rules.statuses[rule + near] ) {
         Vorn::prefetch( status->name().data() );
      }
   }
}

void renderRules( RendererV2 & renderer, PolicyState const & state, bool countersPerInterface,
                  char const * ruleFunction ) {
   static constexpr JsonKey rulesKey( "rules" );
   unsigned const detailIndent = state.indentCountPerLevel() + 6;
   bool const summary = state.summary();
   Rules const rules( state );
   ActionWriter actions( renderer, state, countersPerInterface );
   renderer.startJsonList( rulesKey );
   for ( size_t rule = 0; rule < rules.matches.size(); ++rule ) {
      if ( summary ) {
         prefetchRule( rules, rule );
      }
      PolicyMap::ClassMapMatch const & match = *rules.matches[rule];
      PolicyMap::ClassMapStatus const & status = *rules.statuses[rule];
      renderRuleSummary( renderer, status.name(), match.matchOption() );
      if ( !summary ) {
         trace.write( 8, { "Rendering detailed view of the rule ", ruleFunction }, status.name() );
         renderMatches( renderer, state, match, detailIndent );
         actions.renderActions( status.name(), status, detailIndent );
      }
      renderer.endJsonDict();
   }
   renderer.endJsonList();
}

template< typename Binding >
void renderPolicy( RendererV2 & renderer, typename Binding::State const & state,
                   bool countersPerInterface ) {
   if ( renderer.isText() ) {
      renderer.write( "Traffic policy ", state.name(), '\n' );
   }
   renderer.startJsonObject( state.name() );
   if ( state.errors() ) {
      renderCommonErrorsModel< Binding >( renderer, state );
   } else {
      renderCommonModel< Binding >( renderer, state );
      renderNamedCounter( renderer, state );
      renderRules( renderer, state, countersPerInterface,
                   policyViewLabels< Binding >.ruleFunction );
   }
   renderer.endJsonDict();
}

} // namespace

template< typename Binding >
void renderPolicies( unsigned fd, unsigned format, Selection const & selection,
                     PolicyViewOptions const & options ) {
   static constexpr JsonKey trafficPolicies( "trafficPolicies" );
   Reply reply( fd, format );
   RendererV2 & renderer = reply.renderer();
   bool anyFailed = false;
   reply.open();
   renderer.startJsonObject( trafficPolicies );
   selection.forEach( [&]( PolicyState const & policyState ) {
      auto const & state = static_cast< typename Binding::State const & >( policyState );
      renderPolicy< Binding >( renderer, state, options.countersPerInterface );
      anyFailed |= Binding::anyFailed( state );
      if ( state.undefinedCounter() ) {
         renderer.addFrill( undefinedCounterWarning );
         renderer.eol();
      }
   } );
   renderer.endJsonDict();
   if ( !options.errors ) {
      renderer.addFrill( options.allVrfs ? allVrfsNote : "" );
      renderer.addFrill( anyFailed ? policyViewLabels< Binding >.failedWarning : "" );
   }
   reply.close();
}

template void renderPolicies< CpuBinding >( unsigned, unsigned, Selection const &,
                                            PolicyViewOptions const & );
template void renderPolicies< InterfaceBinding >( unsigned, unsigned, Selection const &,
                                                  PolicyViewOptions const & );

} // namespace TrafficPolicyCli
