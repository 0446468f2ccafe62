#include "sources/rules/PolicyBuilder.h"

#include "sources/FileError.h"

namespace tpcli {

using PolicyMap::Action;
using PolicyMap::ActionType;
using PolicyMap::ClassAction;
using Count = SwitchRule::Count;

PolicyBuilder::PolicyBuilder( State & state, Vorn::String const & name )
   : config_( Vorn::create< PolicyMap::PolicyMapSubConfig >( name ) )
   , status_( Vorn::create< PolicyMap::PolicyMapStatus >( name ) ) {
   auto const policy = Vorn::create< PolicyMap::PolicyMapConfig >();
   policy->currCfgIs( config_ );
   state.config->policyMapConfigIs( name, policy );
   state.status->policyMapStatusIs( name, status_ );
}

void PolicyBuilder::reserve( size_t rules ) {
   config_->classesReserve( rules );
   status_->cmapReserve( rules );
}

void PolicyBuilder::add( SwitchRule const & rule ) {
   if ( rules_ == Vorn::rulesMax ) {
      throw FileError( {}, "policy " + std::string( name().view() ) + ": more than "
                              + std::to_string( Vorn::rulesMax ) + " rules" );
   }
   rules_ += 1;
   families_ |= 1u << static_cast< unsigned >( rule.family );

   auto const match = Vorn::create< PolicyMap::ClassMapMatch >( rule.family );
   match->structuredFilterIs( rule.filter );
   auto const classConfig = Vorn::create< PolicyMap::ClassMapSubConfig >();
   classConfig->matchIs( rule.family, match );
   config_->classSequenceIs( rules_ * 10, rule.name );
   config_->rawClassMapIs( rule.name, classConfig );
   if ( rule.drop || rule.log || rule.count != Count::none ) {
      config_->classActionIs( rule.name, actions( rule ) );
   }

   auto const status = Vorn::create< PolicyMap::ClassMapStatus >( rule.name );
   status->matchIs( rule.family );
   if ( rule.count == Count::own ) {
      status->uniqueIdIs( rule.counterId );
      status->packetCountIs( rule.total.packets );
   } else if ( rule.count == Count::named ) {
      addNamedCounter( rule );
   }
   status_->cmapIs( rule.name, status );
}

void PolicyBuilder::addNamedCounter( SwitchRule const & rule ) {
   config_->namedCounterIs( rule.name );
   auto const counter = Vorn::create< PolicyMap::PacketDataStatus >( rule.name );
   counter->uniqueIdIs( rule.counterId );
   counter->totalIs( rule.total );
   for ( auto const & [intf, count] : rule.interfaces ) {
      auto const data = Vorn::create< PolicyMap::IntfCountData >( intf, rule.counterId );
      data->countDataIs( count );
      counter->intfCountDataIs( intf, data );
   }
   status_->counterStatusIs( rule.name, counter );
}

Vorn::Ptr< ClassAction const > PolicyBuilder::actions( SwitchRule const & rule ) {
   bool const own = rule.count == Count::own;
   auto & usual = usualActions_[( rule.drop ? 1u : 0 ) | ( rule.log ? 2u : 0 ) | ( own ? 4u : 0 )];
   bool const named = rule.count == Count::named;
   if ( !named && usual ) {
      return usual;
   }
   auto const actions = Vorn::create< ClassAction >();
   if ( rule.drop ) {
      actions->policyActionIs( ActionType::drop, Vorn::create< Action >( ActionType::drop ) );
   }
   if ( own || named ) {
      actions->policyActionIs( ActionType::count, Vorn::create< PolicyMap::CountAction >(
                                                     named ? rule.name : Vorn::String() ) );
   }
   if ( rule.log ) {
      actions->policyActionIs( ActionType::log, Vorn::create< Action >( ActionType::log ) );
   }
   if ( !named ) {
      usual = actions;
   }
   return actions;
}

void PolicyBuilder::installedIs( Pelx::IntfId const & intf, PolicyMap::ClassMapMatchOption family,
                                 PolicyMap::InstalledStatus const & installed ) {
   auto const * present = interfaces_.lookup( intf );
   auto const status = present ? *present : Vorn::create< PolicyMap::IntfStatus >();
   if ( !present ) {
      interfaces_.set( intf, status );
      status_->intfStatusIs( intf, status );
   }
   status->installedIs( family, installed );
}

} // namespace tpcli
