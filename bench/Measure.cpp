#include "bench/Measure.h"

#include "bench/Memory.h"
#include "bench/Reference.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Bench {

namespace {

using Series = std::vector< double >;

double median( Series values ) {
   if ( values.empty() ) {
      return 0;
   }
   auto const middle = values.begin() + static_cast< ptrdiff_t >( values.size() / 2 );
   std::nth_element( values.begin(), middle, values.end() );
   return *middle;
}

// Of the paired values; 0 for an empty series.
double medianRatio( Series const & of, Series const & to ) {
   Series ratios;
   for ( size_t i = 0; i < std::min( of.size(), to.size() ); ++i ) {
      ratios.push_back( of[i] / to[i] );
   }
   return median( std::move( ratios ) );
}

class Rounds {
public:
   Rounds( Case const & subject, World const & world, Sink & sink )
      : subject_( subject )
      , world_( world )
      , sink_( sink ) {
      if ( subject.writes ) {
         finished_ = Captured( [&]( int fd ) { subject.command( world )->run( fd ); } );
      }
      if ( subject.same ) {
         Captured const reference( [&]( int fd ) { writeWithRapidJson( fd, world.rules ); } );
         if ( reference.view() != finished_.view() ) {
            throw std::logic_error( subject.name + ": the reference's bytes are others" );
         }
      }
      result_.rules = world.rules.size();
      result_.bytes = finished_.view().size();
   }

   // The order rotates from round to round.
   void round( size_t number ) {
      for ( size_t step = 0; step < 3; ++step ) {
         switch ( ( number + step ) % 3 ) {
         case 0:
            runCommand();
            break;
         case 1:
            runCopy();
            break;
         case 2:
            runReference();
            break;
         }
      }
   }
   // Forgets the rounds before.
   void start() {
      command_.clear();
      copy_.clear();
      reference_.clear();
      firstByte_.clear();
      release_.clear();
   }

   Result result() const {
      Result result = result_;
      result.rounds = command_.size();
      result.command = median( command_ );
      result.commandBest = *std::min_element( command_.begin(), command_.end() );
      result.copy = median( copy_ );
      result.reference = median( reference_ );
      result.toCopy = medianRatio( command_, copy_ );
      result.toReference = medianRatio( reference_, command_ );
      result.firstByte = median( firstByte_ );
      result.release = median( release_ );
      return result;
   }

private:
   // The time until the writer has handed over its last byte.
   template< typename Writer >
   double timed( Writer const & writer ) {
      sink_.begin();
      start_ = now();
      writer();
      auto const time = static_cast< double >( now() - start_ );
      sink_.drain( result_.bytes );
      return time;
   }

   void runCommand() {
      auto command = subject_.command( world_ );
      MemoryScope const scope;
      command_.push_back( timed( [&] { command->run( sink_.fd() ); } ) );
      result_.peak = scope.peakAbove();
      result_.allocations = scope.allocations();
      if ( Nanoseconds const seen = sink_.firstByte(); seen != 0 && subject_.writes ) {
         firstByte_.push_back( static_cast< double >( seen - start_ ) );
      }
      Nanoseconds const before = now();
      command.reset();
      release_.push_back( static_cast< double >( now() - before ) );
   }
   void runCopy() {
      if ( subject_.writes ) {
         copy_.push_back( timed( [&] { copyFinished( sink_.fd(), finished_.view() ); } ) );
      }
   }
   // Has its own number of bytes, which may differ from the case's.
   void runReference() {
      if ( subject_.reference ) {
         uint64_t const bytes = std::exchange( result_.bytes, referenceBytes() );
         reference_.push_back( timed( [&] { writeWithRapidJson( sink_.fd(), world_.rules ); } ) );
         result_.bytes = bytes;
      }
   }
   uint64_t referenceBytes() {
      if ( referenceBytes_ == 0 ) {
         referenceBytes_ =
            subject_.same ? result_.bytes
                          : Captured( [&]( int fd ) { writeWithRapidJson( fd, world_.rules ); } )
                               .view()
                               .size();
      }
      return referenceBytes_;
   }

   Case const & subject_;
   World const & world_;
   Sink & sink_;
   Captured finished_;
   uint64_t referenceBytes_ = 0;
   Nanoseconds start_ = 0;
   Result result_;
   Series command_, copy_, reference_, firstByte_, release_;
};

} // namespace

Result measure( Case const & subject, World const & world, Sink & sink, Effort const & effort ) {
   Rounds rounds( subject, world, sink );
   rounds.round( 0 );
   rounds.start();
   Nanoseconds const begin = now();
   auto const limit = static_cast< Nanoseconds >( effort.seconds * 1e9 );
   for ( unsigned i = 0; i < effort.roundsMin || ( i < effort.roundsMax && now() - begin < limit );
         ++i ) {
      rounds.round( i );
   }
   return rounds.result();
}

} // namespace Bench
