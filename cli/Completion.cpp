#include "cli/Completion.h"

#include "cli/Errors.h"
#include "cli/Help.h"
#include "cli/StateNames.h"

#include <algorithm>
#include <set>

namespace tpcli {

namespace {

class Collector {
public:
   explicit Collector( Completions & completions )
      : completions_( completions ) {}

   void offer( std::string_view word ) {
      if ( !word.starts_with( completions_.begin ) ) {
         return;
      }
      std::string & common = completions_.common;
      if ( words_.empty() ) {
         common = word;
      }
      auto const differ = std::ranges::mismatch( common, word );
      common.erase( differ.in1, common.end() );
      if ( words_.size() < Completions::namesMax ) {
         words_.emplace( word );
      } else if ( !words_.contains( word ) ) {
         completions_.cut = true;
      }
   }
   void finish() { completions_.words.assign( words_.begin(), words_.end() ); }

private:
   Completions & completions_;
   std::set< std::string, std::less<> > words_;
};

// Splits off the last word, which is being typed: the empty one behind a space.
Word takeLast( CommandText & text ) {
   if ( text.words.empty() || text.words.back().end < text.line.size() ) {
      return { .text = {}, .begin = text.line.size(), .end = text.line.size() };
   }
   Word last = text.words.back();
   text.words.pop_back();
   // A filter may stand right behind its |.
   if ( last.mayPipe ) {
      text.words.push_back( { "|", last.begin, last.begin + 1, true } );
      last = { .text = last.text.substr( 1 ), .begin = last.begin + 1, .end = last.end };
   }
   return last;
}

void offerNames( Completions const & completions, Command const & command, Workspace & workspace,
                 Collector & collector ) {
   ArgumentRow const & row = argumentRow( completions.next.argument );
   if ( row.values ) {
      for ( std::string_view const value : row.values() ) {
         collector.offer( value );
      }
   }
   if ( !row.isName ) {
      return;
   }
   try {
      workspace.readIfChanged();
   } catch ( FileError const & ) {
      return; // the command itself will tell
   }
   forEachName( workspace.state(), row.argument, command.value( Option::policy ),
                [&]( std::string_view name ) { collector.offer( name ); } );
}

void completeLast( CommandText & text, bool isLine, Workspace & workspace,
                   Completions & completions ) {
   CommandWalk walk( isLine );
   try {
      walk.take( text );
   } catch ( UsageError const & error ) {
      completions.problem = error.what();
      return;
   }
   completions.next = walk.next();
   if ( completions.next.argument == Argument::words ) {
      // A command in its turn.
      text.words.erase( text.words.begin() );
      completeLast( text, isLine, workspace, completions );
      return;
   }
   Collector collector( completions );
   for ( Choice const & choice : completions.next.words ) {
      collector.offer( choice.word );
   }
   offerNames( completions, walk.command(), workspace, collector );
   collector.finish();
}

} // namespace

Completions complete( CommandText text, bool isLine, Workspace & workspace ) {
   Completions completions;
   Word const last = takeLast( text );
   text.openQuote = false;
   completions.begin = last.text;
   completions.beginsAt = last.begin;
   completeLast( text, isLine, workspace, completions );
   return completions;
}

std::string describe( Completions const & completions ) {
   if ( !completions.problem.empty() ) {
      return "   " + completions.problem + '\n';
   }
   std::string text = describe( completions.next, completions.begin );
   for ( std::string const & word : completions.words ) {
      if ( std::ranges::find( completions.next.words, word, &Choice::word )
           == completions.next.words.end() ) {
         text += "   " + quotedWord( word ) + '\n';
      }
   }
   return text + ( completions.cut ? "   ...\n" : "" );
}

} // namespace tpcli
