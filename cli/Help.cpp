#include "cli/Help.h"

#include "cli/ExitStatus.h"

#include <algorithm>
#include <utility>

namespace tpcli {

namespace {

constexpr size_t lineWidth = 96;

using Rows = std::vector< std::pair< std::string, std::string > >;

std::string withArgument( std::string_view word, std::string_view placeholder ) {
   std::string text( word );
   return placeholder.empty() ? text : text.append( " " ).append( placeholder );
}

// Indented columns; an empty second one is left out.
std::string table( Rows const & rows ) {
   size_t width = 0;
   for ( auto const & [left, right] : rows ) {
      width = std::max( width, left.size() );
   }
   std::string text;
   for ( auto const & [left, right] : rows ) {
      text += "   " + left;
      if ( !right.empty() ) {
         text.append( width - left.size() + 3, ' ' ) += right;
      }
      text += '\n';
   }
   return text;
}

// A synopsis in lines of at most the width, the later ones indented. A bracket is not broken.
std::string wrapped( std::string_view text ) {
   std::string result;
   std::string line = "   ";
   while ( !text.empty() ) {
      size_t end = 0;
      int depth = 0;
      for ( ; end < text.size() && ( depth > 0 || text[end] != ' ' ); ++end ) {
         depth += text[end] == '[' || text[end] == '{'   ? 1
                  : text[end] == ']' || text[end] == '}' ? -1
                                                         : 0;
      }
      if ( line.size() + end >= lineWidth ) {
         result += line + '\n';
         line = "         ";
      }
      line.append( line.ends_with( ' ' ) ? "" : " " ).append( text.substr( 0, end ) );
      text.remove_prefix( std::min( end + 1, text.size() ) );
   }
   return result + line + '\n';
}

// All but the last words, and what follows them, are those of the row.
bool differsInLastWord( CommandRow const & a, CommandRow const & b ) {
   auto const aPath = a.path();
   auto const bPath = b.path();
   return a.reply == b.reply && a.options == b.options && a.argument == b.argument
          && a.linesOnly == b.linesOnly && aPath.size() == bPath.size() && aPath.size() > 1
          && std::ranges::equal( aPath.first( aPath.size() - 1 ), bPath.first( bPath.size() - 1 ) );
}

// Of the rows, which differ in their last words alone.
std::string synopsis( std::span< CommandRow const > rows ) {
   CommandRow const & row = rows.front();
   std::string text;
   for ( std::string_view const word : row.path().first( row.path().size() - 1 ) ) {
      text.append( word ).append( " " );
   }
   std::string last;
   for ( CommandRow const & one : rows ) {
      last.append( last.empty() ? "" : " | " ).append( one.path().back() );
   }
   text += rows.size() > 1 ? "{" + last + "}" : last;
   if ( row.argument != Argument::none ) {
      std::string const placeholder( argumentRow( row.argument ).placeholder );
      std::string const more = row.argument == Argument::words ? " ..." : "";
      text += row.argumentNeeded ? " " + placeholder : " [" + placeholder + more + "]";
   }
   for ( OptionRow const & option : optionRows() ) {
      if ( row.options.has( option.option ) ) {
         text +=
            " [" + withArgument( option.word, argumentRow( option.argument ).placeholder ) + "]";
      }
   }
   bool const piped = row.reply == Reply::text || row.reply == Reply::textOrJson;
   return text + ( piped ? " [| FILTER]" : "" );
}

std::string usageLine() {
   std::string text = "tpcli";
   for ( ProgramOptionRow const & row : programOptionRows() ) {
      text += " [--" + withArgument( row.name, row.placeholder ) + "]";
   }
   return wrapped( text + " [COMMAND ...]" );
}

} // namespace

std::vector< std::string > synopses() {
   std::vector< std::string > result;
   auto const rows = commandRows();
   for ( size_t begin = 0, end = 0; begin < rows.size(); begin = end ) {
      while ( end < rows.size()
              && ( end == begin || differsInLastWord( rows[begin], rows[end] ) ) ) {
         ++end;
      }
      if ( !rows[begin].hidden ) {
         result.push_back( synopsis( rows.subspan( begin, end - begin ) ) );
      }
   }
   return result;
}

std::string helpText() {
   std::string text =
      "usage:\n" + usageLine() + "\ncommands, of which each word may be cut where it is unique:\n";
   for ( std::string const & command : synopses() ) {
      text += wrapped( command );
   }
   Rows commands;
   for ( CommandRow const & row : commandRows() ) {
      std::string words;
      for ( std::string_view const word : row.path() ) {
         words.append( words.empty() ? "" : " " ).append( word );
      }
      if ( !row.hidden ) {
         commands.emplace_back( words, row.help );
      }
   }
   Rows words;
   for ( OptionRow const & row : optionRows() ) {
      words.emplace_back( withArgument( row.word, argumentRow( row.argument ).placeholder ),
                          row.help );
   }
   Rows filters;
   for ( PipeRow const & row : pipeRows() ) {
      filters.emplace_back( withArgument( row.word, argumentRow( row.argument ).placeholder ),
                            row.help );
   }
   Rows options;
   for ( ProgramOptionRow const & row : programOptionRows() ) {
      options.emplace_back( "--" + withArgument( row.name, row.placeholder ), row.help );
   }
   Rows statuses;
   for ( StatusRow const & row : statusRows ) {
      statuses.emplace_back( std::to_string( static_cast< int >( row.status ) ), row.meaning );
   }
   return text + "\nwhat they do:\n" + table( commands ) + "\nwords, in any order:\n"
          + table( words ) + "\nfilters:\n" + table( filters ) + "\noptions:\n" + table( options )
          + "\nexit status:\n" + table( statuses );
}

std::string describe( Continuation const & next, std::string_view begin ) {
   Rows rows;
   if ( next.argument != Argument::none ) {
      rows.emplace_back( argumentRow( next.argument ).placeholder, next.help );
   }
   for ( Choice const & choice : next.words ) {
      if ( choice.word.starts_with( begin ) ) {
         rows.emplace_back( withArgument( choice.word, argumentRow( choice.argument ).placeholder ),
                            choice.help );
      }
   }
   if ( next.complete && begin.empty() ) {
      rows.emplace_back( "<cr>", "run the command" );
   }
   return table( rows );
}

} // namespace tpcli
