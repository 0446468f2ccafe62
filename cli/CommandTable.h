// The one table of the command line: every command, its words, what may follow, and their help.
//
// The parser, help and ?, completion, the usage and the checked synopses of the documents are all
// made from it: a word is added here and nowhere else.

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tpcli {

enum class Verb : uint8_t {
   showCpu,
   showInterface,
   lastClear,
   clear,
   check,
   status,
   snapshot,
   schema,
   metrics,
   types,
   completion,
   complete,
   help,
   leave
};

// What stands in the place of a value; names of records are completed from the state.
enum class Argument : uint8_t {
   none,
   policy,
   rule,
   interface,
   vrf,
   seconds,
   number,
   className,
   schema,
   shell,
   text,
   words
};

inline constexpr unsigned argumentCount = static_cast< unsigned >( Argument::words ) + 1;

struct ArgumentRow {
   Argument argument;
   std::string_view placeholder;
   std::string_view meaning; // after "needs"
   bool isName = false;      // of something in the state, which completes it
   // Whether a value is one; null: any is.
   bool ( *valid )( std::string_view value ) = nullptr;
   // What the program itself has to complete it, or null.
   std::vector< std::string_view > ( *values )() = nullptr;
};

// The words after a command that come in any order, each once.
enum class Option : uint8_t {
   policy,
   summary,
   detail,
   errors,
   counters,
   perInterface,
   rule,
   interface,
   vrf,
   failed,
   nonzero,
   unused,
   raw,
   rates,
   interval,
   count
};
inline constexpr unsigned optionCount = static_cast< unsigned >( Option::count ) + 1;

class OptionSet {
public:
   constexpr OptionSet() = default;
   template< typename... Options >
   constexpr explicit OptionSet( Options... options )
      : bits_( ( 0u | ... | bit( options ) ) ) {}

   constexpr bool has( Option option ) const { return ( bits_ & bit( option ) ) != 0; }
   constexpr bool meets( OptionSet other ) const { return ( bits_ & other.bits_ ) != 0; }
   constexpr void add( Option option ) { bits_ |= bit( option ); }
   constexpr bool empty() const { return bits_ == 0; }
   friend constexpr bool operator==( OptionSet, OptionSet ) = default;

private:
   static constexpr uint32_t bit( Option option ) {
      return 1u << static_cast< unsigned >( option );
   }

   uint32_t bits_ = 0;
};

struct OptionRow {
   Option option;
   std::string_view word;
   Argument argument;
   std::string_view help;
   OptionSet excludes = {}; // stated once for two options
   OptionSet needs = {};    // one of these must stand before it
};

// What a command writes, which is what may stand after a |.
enum class Reply : uint8_t { nothing, text, textOrJson, json };

struct CommandRow {
   Verb verb;
   std::array< std::string_view, 4 > words; // the rest is empty
   std::string_view help;
   Reply reply = Reply::nothing;
   OptionSet options = {};
   Argument argument = Argument::none;
   bool argumentNeeded = false;
   bool linesOnly = false; // makes sense where commands are read from lines
   bool hidden = false;    // for our own scripts: no help or completion has it

   constexpr std::span< std::string_view const > path() const {
      size_t count = 0;
      while ( count < words.size() && !words[count].empty() ) {
         ++count;
      }
      return std::span( words ).first( count );
   }
};

// A word that several commands begin with.
struct GroupRow {
   std::string_view word;
   std::string_view help;
};

enum class Pipe : uint8_t { include, exclude, begin, count, json };

struct PipeRow {
   Pipe pipe;
   std::string_view word;
   Argument argument;
   std::string_view help;
   bool last = false;  // nothing may follow
   bool alone = false; // nothing may stand before it, either
};

// The options of the program itself.
struct ProgramOptionRow {
   char letter;
   std::string_view name;
   std::string_view placeholder; // empty: takes no value
   std::string_view help;
};

// In the order in which help lists them.
std::span< CommandRow const > commandRows();
std::span< OptionRow const > optionRows();
std::span< PipeRow const > pipeRows();
std::span< ProgramOptionRow const > programOptionRows();

// A number of seconds, above 0 and no more than a year, or nothing.
std::optional< double > parseSeconds( std::string_view text );
// A number of times, above 0, or nothing.
std::optional< unsigned > parseCount( std::string_view text );

ArgumentRow const & argumentRow( Argument argument );
OptionRow const & optionRow( Option option );
// What a word that begins several commands is about.
std::string_view groupHelp( std::string_view word );

// Whether the table says that the two do not go together.
bool exclude( Option a, Option b );
bool lacksNeed( Option option, OptionSet given );
bool excluded( Option option, OptionSet given );

} // namespace tpcli
