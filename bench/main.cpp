// tp_bench: how fast the shows are, beside a plain copy of their output and beside RapidJSON.

#include "bench/Measure.h"
#include "bench/RecordMemory.h"
#include "bench/Report.h"

#include <benchmark/benchmark.h>
#include <getopt.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

using namespace Bench;

constexpr char usage[] =
   "usage: tp_bench [OPTION]...\n"
   "  --rules N[,N]...   sizes of the policy (1000,10000,100000,1000000,2003003)\n"
   "  --filters FILE     the filter set that the rules are made of\n"
   "  --seconds S        of rounds for each case (0.5)\n"
   "  --rounds N         at least so many (5)\n"
   "  --distinct-names   names are not shared between configuration and status\n"
   "  --shuffled-status  the status lists its rules in another order\n"
   "  --scattered-records  the rules' records stand in memory in another order\n"
   "  --memory           the memory of the records by kind, in place of times\n"
   "  --csv FILE         the results as comma-separated values\n"
   "and Google Benchmark's options, above all\n"
   "  --benchmark_filter=REGEX   of case names such as cpu/detail/json/pipe/10000\n"
   "  --benchmark_list_tests\n";

struct Options {
   std::vector< size_t > sizes{ 1000, 10'000, 100'000, 1'000'000, Vorn::rulesMax };
   std::string filters = TP_BENCH_FILTERS;
   std::string csv;
   Effort effort;
   BuildOptions build;
   bool memory = false;
};

std::vector< size_t > parseSizes( std::string const & text ) {
   std::vector< size_t > sizes;
   for ( size_t at = 0; at < text.size(); ) {
      size_t used = 0;
      sizes.push_back( std::stoul( text.substr( at ), &used ) );
      if ( sizes.back() == 0 || sizes.back() > Vorn::rulesMax ) {
         throw std::out_of_range( "a policy has 1 to 2003003 rules" );
      }
      at += used + 1;
   }
   return sizes;
}

enum Option {
   rules,
   filters,
   seconds,
   rounds,
   distinctNames,
   shuffledStatus,
   scatteredRecords,
   memory,
   csv,
   help
};

void takeOption( Options & options, int option ) {
   switch ( option ) {
   case rules:
      options.sizes = parseSizes( optarg );
      break;
   case filters:
      options.filters = optarg;
      break;
   case seconds:
      options.effort.seconds = std::stod( optarg );
      break;
   case rounds:
      options.effort.roundsMin = static_cast< unsigned >( std::stoul( optarg ) );
      options.effort.roundsMax = std::max( options.effort.roundsMax, options.effort.roundsMin );
      break;
   case distinctNames:
      options.build.sharedNames = false;
      break;
   case shuffledStatus:
      options.build.shuffledStatus = true;
      break;
   case scatteredRecords:
      options.build.scatteredRecords = true;
      break;
   case memory:
      options.memory = true;
      break;
   case csv:
      options.csv = optarg;
      break;
   case help:
      std::fputs( usage, stdout );
      std::exit( 0 );
   default:
      std::fputs( usage, stderr );
      std::exit( 1 );
   }
}

Options parseOptions( int argc, char ** argv ) {
   static option const known[] = { { "rules", required_argument, nullptr, rules },
                                   { "filters", required_argument, nullptr, filters },
                                   { "seconds", required_argument, nullptr, seconds },
                                   { "rounds", required_argument, nullptr, rounds },
                                   { "distinct-names", no_argument, nullptr, distinctNames },
                                   { "shuffled-status", no_argument, nullptr, shuffledStatus },
                                   { "scattered-records", no_argument, nullptr, scatteredRecords },
                                   { "memory", no_argument, nullptr, memory },
                                   { "csv", required_argument, nullptr, csv },
                                   { "help", no_argument, nullptr, help },
                                   { nullptr, 0, nullptr, 0 } };
   Options options;
   for ( int found = 0; ( found = getopt_long( argc, argv, "", known, nullptr ) ) != -1; ) {
      takeOption( options, found );
   }
   return options;
}

// The cases of one size.
class Program {
public:
   Program( Options const & options, size_t size, Report & report )
      : options_( options )
      , size_( size )
      , report_( report ) {}

   void run() {
      for ( Case const & subject : cases_ ) {
         add( subject, subject.writes ? "null" : "none", *null_ );
         if ( subject.writes ) {
            add( subject, "pipe", *pipe_ );
         }
      }
      benchmark::RunSpecifiedBenchmarks();
   }

private:
   void add( Case const & subject, std::string const & sinkName, Sink & sink ) {
      std::string const name = subject.name + '/' + sinkName + '/' + std::to_string( size_ );
      auto const run = [this, &subject, sinkName, &sink]( benchmark::State & state ) {
         for ( auto unused : state ) {
            static_cast< void >( unused );
            Result const result = measure( subject, world(), sink, options_.effort );
            report_.add( subject.name, sinkName, result );
            state.SetIterationTime( result.command / 1e9 );
            show( state, result );
         }
      };
      // The rounds are ours: they interleave what the framework would run one after another.
      benchmark::RegisterBenchmark( name.c_str(), run )
         ->UseManualTime()
         ->Iterations( 1 )
         ->Unit( benchmark::kMillisecond );
   }

   static void show( benchmark::State & state, Result const & result ) {
      auto const rules = static_cast< double >( result.rules );
      auto & counters = state.counters;
      counters["rules/s"] = rules / result.command * 1e9;
      counters["bytes/s"] = static_cast< double >( result.bytes ) / result.command * 1e9;
      counters["ns/rule"] = result.command / rules;
      counters["of copy"] = result.toCopy;
      counters["vs ref"] = result.toReference;
      counters["1st us"] = result.firstByte / 1e3;
      counters["B/rule"] = static_cast< double >( result.peak ) / rules;
      counters["allocs"] = static_cast< double >( result.allocations );
      counters["rel ns"] = result.release / rules;
   }

   // Built for the first case that needs it.
   World const & world() {
      if ( !world_ ) {
         world_ =
            std::make_unique< World >( readFilters( options_.filters ), size_, options_.build );
      }
      return *world_;
   }

   // First, since its reader is a copy of the program.
   std::unique_ptr< Sink > pipe_ = openPipe();
   std::unique_ptr< Sink > null_ = openNull();
   std::vector< Case > cases_ = allCases();
   Options const & options_;
   size_t size_;
   Report & report_;
   std::unique_ptr< World > world_;
};

// In a process of its own: records made in memory that another size has released would be
// scattered, which would be measured then. Exits without destroying what it built.
int runApart( Options const & options, size_t size, Report & report ) {
   pid_t const child = ::fork();
   if ( child < 0 ) {
      throw std::system_error( errno, std::generic_category(), "fork" );
   }
   if ( child == 0 ) {
      int status = 1;
      try {
         if ( options.memory ) {
            writeRecordMemory( std::cout, makeRules( readFilters( options.filters ), size ),
                               options.build );
         } else {
            // Never destroyed, see above.
            auto * const program = new Program( options, size, report );
            program->run();
         }
         status = 0;
      } catch ( std::exception const & exception ) {
         std::fprintf( stderr, "tp_bench: %s\n", exception.what() );
      }
      std::cout.flush();
      std::fflush( nullptr );
      ::_exit( status );
   }
   int status = 0;
   ::waitpid( child, &status, 0 );
   return status == 0 ? 0 : 1;
}

} // namespace

int main( int argc, char ** argv ) {
   try {
      char tabular[] = "--benchmark_counters_tabular=true";
      std::vector< char * > arguments( argv, argv + argc );
      arguments.insert( arguments.begin() + 1, tabular );
      int count = static_cast< int >( arguments.size() );
      arguments.push_back( nullptr );
      for ( char const * argument : arguments ) {
         if ( argument && std::string_view( argument ) == "--help" ) {
            std::fputs( usage, stdout );
            return 0;
         }
      }
      benchmark::Initialize( &count, arguments.data() );
      Options const options = parseOptions( count, arguments.data() );
      Report report( options.csv );
      int failed = 0;
      for ( size_t const size : options.sizes ) {
         failed |= runApart( options, size, report );
      }
      return failed;
   } catch ( std::exception const & exception ) {
      std::fprintf( stderr, "tp_bench: %s\n", exception.what() );
      return 1;
   }
}
