// Both policy views: one walk over the policies, a template over the side's binding and labels.

#include "TrafficPolicy/views/PolicyView.h"

#include "TrafficPolicy/model/Columns.h"
#include "TrafficPolicy/model/Trace.h"
#include "TrafficPolicy/views/ActionView.h"
#include "TrafficPolicy/views/MatchView.h"
#include "TrafficPolicy/views/NamedCounterList.h"
#include "TrafficPolicy/views/PolicyViewLabels.h"
#include "TrafficPolicy/views/Reply.h"

#include <string>

namespace TrafficPolicyCli {

namespace {

using wendo::indentation;
using wendo::JsonKey;
using wendo::JsonMember;
using wendo::RendererV2;

constexpr unsigned namesShown = 3; // in text, without "detail"

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
   auto const list = renderer.list( label.key );
   renderer.text( indentation( Columns::list ), label.text );
   if ( names ) {
      size_t count = 0;
      for ( auto const & [name, member] : *names ) {
         wendo::interrupt::check();
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
   renderer.eol();
}

// One line per binding that failed: its name and the error text. Nothing for a family without
// failures, not even the JSON key.
template< typename Binding >
void renderInstallErrors( RendererV2 & renderer, JsonKey const & key,
                          typename Binding::State const & state, ClassMapMatchOption option ) {
   trace.write( 8, "", policyViewLabels< Binding >.errorsSignature, key.name(), ", ", option );
   auto const * errors = Binding::errors( state, option );
   if ( !errors ) {
      trace.write( 8, "No installation errors to render" );
      return;
   }
   auto const list = renderer.list( key );
   for ( auto const & [name, text] : *errors ) {
      wendo::interrupt::check();
      std::string line( Binding::string( name ).view() );
      line.append( " (" ).append( text.view() ).append( ")" );
      renderer.addJsonKeyValuePair( wendo::listElement, line );
      renderer.text( indentation( Columns::errors( state ) ), std::string_view( line ), '\n' );
   }
}

void renderRulesModel( RendererV2 & renderer, unsigned ruleCount ) {
   renderer.text( indentation( Columns::list ), "Total number of rules configured: ", ruleCount,
                  '\n' );
}

template< typename Binding >
void renderCommonErrorsModel( RendererV2 & renderer, typename Binding::State const & state ) {
   auto const * policyState = &state;
   VORN_ASSERT( !policyState->detail() );
   for ( FamilyLabels const & family : policyViewLabels< Binding >.families ) {
      renderListEntry< Binding >( renderer, family.failed, Binding::failed( state, family.option ),
                                  state.detail() );
      renderInstallErrors< Binding >( renderer, family.errors, state, family.option );
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

// The rule's object in JSON, with the heading as its first members.
wendo::JsonScope renderRuleSummary( RendererV2 & renderer, Vorn::String const & ruleName,
                                    ClassMapMatchOption option ) {
   static constexpr JsonKey ruleString( "ruleString" );
   static constexpr JsonKey matchOption( "matchOption" );
   wendo::PlainText const & family = PolicyMap::matchOptionName( option );
   renderer.text( indentation( Columns::rule ), "match ", ruleName, ' ', family, '\n' );
   return renderer.listEntry( JsonMember{ ruleString, ruleName },
                              JsonMember{ matchOption, family } );
}

void renderRules( RendererV2 & renderer, PolicyState const & state, bool countersPerInterface,
                  char const * ruleFunction ) {
   static constexpr JsonKey rules( "rules" );
   bool const summary = state.summary();
   PolicyState::FamilyCursor const families( state.classMapConfig() );
   PolicyState::MatchCursor const matches( state.classMapConfig() );
   PolicyState::StatusCursor const statuses( state.classMapStatus() );
   ActionWriter actions( renderer, state, countersPerInterface );
   auto const list = renderer.list( rules );
   for ( unsigned rule = 0; rule < state.ruleCount(); ++rule ) {
      auto const * classMapMatch = summary ? families[rule] : matches[rule];
      auto const * classMapStatus = statuses[rule];
      VORN_ASSERT( classMapMatch );
      VORN_ASSERT( classMapStatus );
      auto const entry =
         renderRuleSummary( renderer, classMapStatus->name(), classMapMatch->matchOption() );
      if ( !summary ) {
         trace.write( 8, { "Rendering detailed view of the rule ", ruleFunction },
                      classMapStatus->name() );
         renderMatches( renderer, state, *classMapMatch, Columns::details( state ) );
         actions.renderActions( classMapStatus->name(), *classMapStatus,
                                Columns::details( state ) );
      }
   }
}

template< typename Binding >
void renderPolicy( RendererV2 & renderer, typename Binding::State const & state,
                   bool countersPerInterface ) {
   renderer.text( "Traffic policy ", state.name(), '\n' );
   auto const policy = renderer.object( state.name() );
   if ( state.errors() ) {
      renderCommonErrorsModel< Binding >( renderer, state );
   } else {
      renderCommonModel< Binding >( renderer, state );
      renderNamedCounter( renderer, state );
      renderRules( renderer, state, countersPerInterface,
                   policyViewLabels< Binding >.ruleFunction );
   }
}

} // namespace

template< typename Binding >
void renderPolicies( unsigned fd, unsigned format, Selection const & selection,
                     PolicyViewOptions const & options ) {
   writeReply( fd, format, [&]( RendererV2 & renderer ) {
      bool anyFailed = false;
      {
         static constexpr JsonKey trafficPolicies( "trafficPolicies" );
         auto const policies = renderer.object( trafficPolicies );
         selection.forEach( [&]( PolicyState & policyState ) {
            auto const & state = stateOfSide< Binding >( policyState );
            renderPolicy< Binding >( renderer, state, options.countersPerInterface );
            anyFailed |= Binding::anyFailed( state );
            if ( state.undefinedCounter() ) {
               renderer.addFrill( undefinedCounterWarning );
               renderer.eol();
            }
         } );
      }
      if ( !options.errors ) {
         renderer.addFrill( options.allVrfs ? allVrfsNote : "" );
         renderer.addFrill( anyFailed ? policyViewLabels< Binding >.failedWarning : "" );
      }
   } );
}

template void renderPolicies< CpuBinding >( unsigned, unsigned, Selection const &,
                                            PolicyViewOptions const & );
template void renderPolicies< InterfaceBinding >( unsigned, unsigned, Selection const &,
                                                  PolicyViewOptions const & );

} // namespace TrafficPolicyCli
