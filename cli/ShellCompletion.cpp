#include "cli/ShellCompletion.h"

#include "cli/Completion.h"
#include "cli/Errors.h"

#include <algorithm>

namespace tpcli {

namespace {

// Options of the program go to the program that is asked, words of the command are what it is asked
// about; behind an option with a value stands a file.
constexpr std::string_view bashScript = R"script(# Completion of tpcli for bash.
_tpcli() {
   local word current=${COMP_WORDS[COMP_CWORD]} at
   local -a options=() words=()
   for (( at = 1; at < COMP_CWORD; ++at )); do
      word=${COMP_WORDS[at]}
      case $word in
         @valued@)
            if (( at + 1 == COMP_CWORD )); then
               mapfile -t COMPREPLY < <( compgen -f -- "$current" )
               return
            fi
            options+=( "$word" "${COMP_WORDS[++at]}" ) ;;
         --*) options+=( "$word" ) ;;
         *) words+=( "$word" ) ;;
      esac
   done
   if [[ $current == -* ]]; then
      mapfile -t COMPREPLY < <( compgen -W '@options@' -- "$current" )
      return
   fi
   COMPREPLY=()
   while IFS=$'\t' read -r word _; do
      printf -v word %q "$word"
      COMPREPLY+=( "$word" )
   done < <( "${COMP_WORDS[0]}" "${options[@]}" complete-words -- "${words[@]}" "$current" 2> /dev/null )
}
complete -F _tpcli tpcli
)script";

constexpr std::string_view zshScript = R"script(#compdef tpcli
# Completion of tpcli for zsh.
_tpcli() {
   local word line at
   local -a options asked found
   for (( at = 2; at < CURRENT; ++at )); do
      word=${words[at]}
      case $word in
         @valued@)
            if (( at + 1 == CURRENT )); then
               _files
               return
            fi
            options+=( "$word" "${words[++at]}" ) ;;
         --*) options+=( "$word" ) ;;
         *) asked+=( "$word" ) ;;
      esac
   done
   if [[ $PREFIX == -* ]]; then
      found=( @options@ )
      found=( ${(M)found:#$PREFIX*} )
   else
      for line in "${(@f)$( ${words[1]} $options complete-words -- "${asked[@]}" "$PREFIX" 2> /dev/null )}"; do
         word=${line%%$'\t'*}
         [[ -z $line ]] || found+=( "${word//:/\\:}:${line#*$'\t'}" )
      done
   fi
   _describe tpcli found
}
if [[ $funcstack[1] == _tpcli ]]; then
   _tpcli "$@"
else
   compdef _tpcli tpcli
fi
)script";

void replaceAll( std::string & text, std::string_view what, std::string_view by ) {
   for ( size_t at = 0; ( at = text.find( what, at ) ) != text.npos; at += by.size() ) {
      text.replace( at, what.size(), by );
   }
}

} // namespace

std::string completionScript( std::string_view shell ) {
   if ( shell != "bash" && shell != "zsh" ) {
      throw UsageError( "there is completion for bash and zsh, not for \"" + std::string( shell )
                        + '"' );
   }
   std::string script( shell == "bash" ? bashScript : zshScript );
   std::string valued;
   std::string options;
   for ( ProgramOptionRow const & row : programOptionRows() ) {
      std::string const option = "--" + std::string( row.name );
      options.append( options.empty() ? "" : " " ).append( option );
      if ( !row.placeholder.empty() ) {
         valued.append( valued.empty() ? "" : " | " ).append( option );
      }
   }
   replaceAll( script, "@valued@", valued );
   replaceAll( script, "@options@", options );
   return script;
}

std::string completeWords( std::vector< std::string > const & words, Workspace & workspace ) {
   Completions const found = complete( joinArguments( words ), false, workspace );
   std::string text;
   for ( std::string const & word : found.words ) {
      // A name that a line cannot hold would be two.
      if ( word.find( '\n' ) != word.npos ) {
         continue;
      }
      auto const choice = std::ranges::find( found.next.words, word, &Choice::word );
      text.append( word ).append( "\t" );
      text.append( choice == found.next.words.end() ? "" : choice->help ).append( "\n" );
   }
   return text;
}

} // namespace tpcli
