#include "cli/CommandWalk.h"

#include "cli/Errors.h"
#include "cli/Nearest.h"

#include <algorithm>

namespace tpcli {

namespace {

constexpr std::string_view pipeSign = "|";

std::string inQuotes( std::string_view word ) {
   return '"' + std::string( word ) + '"';
}

std::string listed( std::vector< Choice > const & choices ) {
   std::string list;
   for ( Choice const & choice : choices ) {
      list.append( list.empty() ? "" : ", " ).append( choice.word );
   }
   return list;
}

// Whether a word that begins with | begins a pipe where a name may stand, too.
bool beginsPipe( Word const & word, Word const * next ) {
   std::vector< Word > const rest = splitLine( word.text.substr( 1 ) ).words;
   std::string const name = !rest.empty() ? rest.front().text : next ? next->text : "";
   return !name.empty() && std::ranges::any_of( pipeRows(), [&]( PipeRow const & row ) {
      return row.word.starts_with( name );
   } );
}

std::string valueMissing( std::string_view word, Argument argument ) {
   return inQuotes( word ) + " needs " + std::string( argumentRow( argument ).meaning );
}

} // namespace

void CommandWalk::take( CommandText const & text ) {
   line_ = text.line;
   if ( text.openQuote ) {
      fail( "a quote is not closed", text.words.back() );
   }
   for ( size_t at = 0; at < text.words.size(); ++at ) {
      take( text.words[at], at + 1 < text.words.size() ? &text.words[at + 1] : nullptr );
   }
}

void CommandWalk::take( Word const & word, Word const * next ) {
   bool const mayBeName = place_ == Place::value || place_ == Place::argument;
   if ( word.mayPipe && ( !mayBeName || beginsPipe( word, next ) ) ) {
      openPipe( word );
      return;
   }
   switch ( place_ ) {
   case Place::path:
      takePath( word );
      break;
   case Place::argument:
      takeArgument( word );
      break;
   case Place::options:
      takeOption( word );
      break;
   case Place::value:
      takeValue( word );
      break;
   case Place::pipe:
      takePipe( word );
      break;
   case Place::pipeText:
      takePipeText( word );
      break;
   }
}

void CommandWalk::takePath( Word const & word ) {
   std::vector< Choice > const choices = pathWords();
   auto const hidden = std::ranges::find_if( commandRows(), [&]( CommandRow const & row ) {
      return row.hidden && path_.empty() && row.path().front() == word.text;
   } );
   Choice const * choice = select( word, choices );
   if ( !choice && hidden == commandRows().end() ) {
      refuse( word, choices );
   }
   path_.push_back( choice ? choice->word : hidden->path().front() );
   for ( CommandRow const & row : commandRows() ) {
      if ( std::ranges::equal( path_, row.path() ) ) {
         command_.row = &row;
         place_ = row.argument == Argument::none ? Place::options : Place::argument;
      }
   }
}

void CommandWalk::takeArgument( Word const & word ) {
   command_.arguments.push_back( word.text );
   if ( command_.row->argument != Argument::words ) {
      place_ = Place::options;
   }
}

void CommandWalk::takeOption( Word const & word ) {
   std::vector< Choice > const choices = optionWords();
   Choice const * choice = select( word, choices );
   // One that is spelt out is no begin of another, even where it cannot stand.
   auto const spelt = std::ranges::find( optionRows(), word.text, &OptionRow::word );
   bool const isOther = spelt != optionRows().end() && command_.row->options.has( spelt->option )
                        && choice && choice->word != word.text;
   if ( !choice || isOther ) {
      refuseOption( word );
   }
   OptionRow const & row = *std::ranges::find( optionRows(), choice->word, &OptionRow::word );
   command_.options.add( row.option );
   option_ = row.option;
   place_ = row.argument == Argument::none ? Place::options : Place::value;
}

void CommandWalk::takeValue( Word const & word ) {
   auto const valid = argumentRow( optionRow( option_ ).argument ).valid;
   if ( word.text.empty() || ( valid && !valid( word.text ) ) ) {
      fail( missing(), word );
   }
   command_.values[static_cast< size_t >( option_ )] = word.text;
   place_ = Place::options;
}

void CommandWalk::openPipe( Word const & word ) {
   if ( !missing().empty() ) {
      fail( missing(), word );
   }
   if ( pipeWords().empty() ) {
      fail( "nothing may follow after | here", word );
   }
   place_ = Place::pipe;
   // In one word with what follows: |json, or quoted from the shell as a whole.
   for ( Word inner : splitLine( word.text.substr( pipeSign.size() ) ).words ) {
      inner.begin += word.begin + pipeSign.size();
      inner.end += word.begin + pipeSign.size();
      take( inner, nullptr );
   }
}

void CommandWalk::takePipe( Word const & word ) {
   std::vector< Choice > const choices = pipeWords();
   Choice const * choice = select( word, choices );
   if ( !choice ) {
      refuse( word, choices );
   }
   pipe_ = &*std::ranges::find( pipeRows(), choice->word, &PipeRow::word );
   if ( pipe_->pipe == Pipe::json ) {
      command_.json = true;
   } else {
      command_.filters.push_back( { pipe_->pipe, {} } );
   }
   place_ = Place::pipeText;
}

// A text of several words is one with single spaces between them.
void CommandWalk::takePipeText( Word const & word ) {
   if ( pipe_->argument == Argument::none ) {
      refuse( word, {} );
   }
   std::string & text = command_.filters.back().text;
   text.append( text.empty() ? "" : " " ).append( word.text );
}

std::vector< Choice > CommandWalk::pathWords() const {
   std::vector< Choice > choices;
   for ( CommandRow const & row : commandRows() ) {
      auto const path = row.path();
      if ( ( row.linesOnly && !lines_ ) || row.hidden || path.size() <= path_.size()
           || !std::ranges::equal( path_, path.first( path_.size() ) ) ) {
         continue;
      }
      std::string_view const word = path[path_.size()];
      if ( std::ranges::find( choices, word, &Choice::word ) == choices.end() ) {
         choices.push_back(
            { word, path.size() == path_.size() + 1 ? row.help : groupHelp( word ) } );
      }
   }
   return choices;
}

std::vector< Choice > CommandWalk::optionWords() const {
   std::vector< Choice > choices;
   for ( OptionRow const & row : optionRows() ) {
      if ( command_.row->options.has( row.option ) && !command_.has( row.option )
           && !excluded( row.option, command_.options )
           && !lacksNeed( row.option, command_.options ) ) {
         choices.push_back( { row.word, row.help, row.argument } );
      }
   }
   return choices;
}

std::vector< Choice > CommandWalk::pipeWords() const {
   std::vector< Choice > choices;
   Reply const reply = command_.row ? command_.row->reply : Reply::nothing;
   bool const ended = pipe_ && pipe_->last;
   if ( ended || ( reply != Reply::text && reply != Reply::textOrJson ) ) {
      return choices;
   }
   for ( PipeRow const & row : pipeRows() ) {
      if ( !( row.alone && pipe_ ) && ( row.pipe != Pipe::json || reply == Reply::textOrJson ) ) {
         choices.push_back( { row.word, row.help, row.argument } );
      }
   }
   return choices;
}

std::string CommandWalk::missing() const {
   switch ( place_ ) {
   case Place::path:
      return "the command is incomplete; next: " + listed( pathWords() );
   case Place::argument:
      return command_.row->argumentNeeded ? valueMissing( path_.back(), command_.row->argument )
                                          : "";
   case Place::value:
      return valueMissing( optionRow( option_ ).word, optionRow( option_ ).argument );
   case Place::pipe:
      return "the command is incomplete after |; next: " + listed( pipeWords() );
   case Place::pipeText:
      return pipe_->argument != Argument::none && command_.filters.back().text.empty()
                ? valueMissing( pipe_->word, pipe_->argument )
                : "";
   case Place::options:
      break;
   }
   return "";
}

Command const & CommandWalk::finish() const {
   if ( std::string const problem = missing(); !problem.empty() ) {
      throw UsageError( problem, line_, line_.size() + 1, line_.size() + 1 );
   }
   return command_;
}

Continuation CommandWalk::next() const {
   Continuation result;
   result.complete = missing().empty();
   switch ( place_ ) {
   case Place::path:
      result.words = pathWords();
      return result;
   case Place::argument:
      result.argument = command_.row->argument;
      result.help = command_.row->help;
      break;
   case Place::options:
      result.words = optionWords();
      break;
   case Place::value:
      result.argument = optionRow( option_ ).argument;
      result.help = optionRow( option_ ).help;
      return result;
   case Place::pipe:
      result.words = pipeWords();
      return result;
   case Place::pipeText:
      result.argument = pipe_->argument;
      result.help = pipe_->help;
      break;
   }
   if ( result.complete && !pipeWords().empty() ) {
      result.words.push_back( { pipeSign, "filter the reply" } );
   }
   return result;
}

Choice const * CommandWalk::select( Word const & word,
                                    std::vector< Choice > const & choices ) const {
   std::vector< Choice > begun;
   Choice const * found = nullptr;
   for ( Choice const & choice : choices ) {
      if ( choice.word == word.text ) {
         return &choice;
      }
      if ( !word.text.empty() && choice.word.starts_with( word.text ) ) {
         begun.push_back( choice );
         found = &choice;
      }
   }
   if ( begun.size() > 1 ) {
      fail( inQuotes( word.text ) + " is ambiguous: " + listed( begun ), word );
   }
   return found;
}

void CommandWalk::refuse( Word const & word, std::vector< Choice > const & choices ) const {
   if ( choices.empty() ) {
      fail( "nothing may follow here, but there is " + inQuotes( word.text ), word );
   }
   Nearest nearest( word.text );
   for ( Choice const & choice : choices ) {
      nearest.offer( choice.word );
   }
   fail( "unknown word " + inQuotes( word.text ) + nearest.suggestion(), word );
}

// One that the command has, but not here, or an unknown one.
void CommandWalk::refuseOption( Word const & word ) const {
   std::vector< Choice > all;
   for ( OptionRow const & row : optionRows() ) {
      if ( command_.row->options.has( row.option ) ) {
         all.push_back( { row.word, row.help, row.argument } );
      }
   }
   Choice const * choice = select( word, all );
   if ( !choice ) {
      refuse( word, all );
   }
   OptionRow const & row = *std::ranges::find( optionRows(), choice->word, &OptionRow::word );
   if ( command_.has( row.option ) ) {
      fail( inQuotes( row.word ) + " is given twice", word );
   }
   for ( OptionRow const & needed : optionRows() ) {
      if ( row.needs.has( needed.option ) && lacksNeed( row.option, command_.options ) ) {
         fail( inQuotes( row.word ) + " needs " + inQuotes( needed.word ) + " before it", word );
      }
   }
   for ( OptionRow const & given : optionRows() ) {
      if ( command_.has( given.option ) && exclude( given.option, row.option ) ) {
         bool const stated = given.excludes.has( row.option );
         fail( inQuotes( stated ? given.word : row.word ) + " and "
                  + inQuotes( stated ? row.word : given.word ) + " exclude each other",
               word );
      }
   }
   refuse( word, all );
}

void CommandWalk::fail( std::string const & problem, Word const & word ) const {
   throw UsageError( problem, line_, word.begin, word.end );
}

Command parseCommand( CommandText const & text, bool lines ) {
   CommandWalk walk( lines );
   walk.take( text );
   return walk.finish();
}

} // namespace tpcli
