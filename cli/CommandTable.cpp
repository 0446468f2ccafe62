#include "cli/CommandTable.h"

#include "TrafficPolicy/platform/vorn/TypeRecord.h"
#include "cli/Schemas.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace tpcli {

namespace {

std::vector< std::string_view > classNames() {
   std::vector< std::string_view > names;
   for ( Vorn::TypeRecord const * type : Vorn::TypeRecord::sorted() ) {
      names.push_back( type->name() );
   }
   return names;
}

std::vector< std::string_view > shellNames() {
   return { "bash", "zsh" };
}

constexpr ArgumentRow arguments[] = {
   { Argument::none, "", "" },
   { Argument::policy, "NAME", "the name of a policy", true },
   { Argument::rule, "NAME", "the name of a rule", true },
   { Argument::interface, "NAME", "the name of an interface", true },
   { Argument::vrf, "NAME", "the name of a VRF", true },
   { .argument = Argument::seconds,
     .placeholder = "SECONDS",
     .meaning = "a number of seconds",
     .valid = []( std::string_view value ) { return parseSeconds( value ).has_value(); } },
   { .argument = Argument::number,
     .placeholder = "NUMBER",
     .meaning = "a number of times",
     .valid = []( std::string_view value ) { return parseCount( value ).has_value(); } },
   { Argument::className, "NAME", "the name of a class", false, nullptr, classNames },
   { .argument = Argument::schema,
     .placeholder = "NAME",
     .meaning = "the name of a schema",
     .values = schemaNames },
   { .argument = Argument::shell,
     .placeholder = "SHELL",
     .meaning = "the name of a shell, bash or zsh",
     .values = shellNames },
   { Argument::text, "TEXT", "a text", true },
   { Argument::words, "COMMAND", "a command" },
};

constexpr OptionSet showOptions( Option::policy, Option::summary, Option::detail, Option::errors,
                                 Option::counters, Option::perInterface, Option::rule,
                                 Option::interface, Option::vrf, Option::failed, Option::nonzero,
                                 Option::unused, Option::raw, Option::rates, Option::interval,
                                 Option::count );

constexpr CommandRow commands[] = {
   { .verb = Verb::showCpu,
     .words = { "show", "traffic-policy", "cpu" },
     .help = "the policies of control-plane traffic, per VRF",
     .reply = Reply::textOrJson,
     .options = showOptions },
   { .verb = Verb::showInterface,
     .words = { "show", "traffic-policy", "interface" },
     .help = "the policies of interfaces",
     .reply = Reply::textOrJson,
     .options = showOptions },
   { .verb = Verb::lastClear,
     .words = { "show", "traffic-policy", "counters", "last-clear" },
     .help = "since when the counts are, and which counters are newer",
     .reply = Reply::textOrJson },
   { .verb = Verb::clear,
     .words = { "clear", "traffic-policy", "counters" },
     .help = "let the counts that the shows print begin at zero",
     .options = OptionSet( Option::policy ) },
   { .verb = Verb::status,
     .words = { "status" },
     .help = "one line a policy; exit status 4 when an installation failed",
     .reply = Reply::textOrJson },
   { .verb = Verb::check,
     .words = { "check" },
     .help = "what is inconsistent or shown nowhere; exit status 1 when there is any",
     .reply = Reply::textOrJson },
   { .verb = Verb::snapshot,
     .words = { "snapshot" },
     .help = "the state that was read, as a state file",
     .reply = Reply::json },
   { .verb = Verb::schema,
     .words = { "schema" },
     .help = "the JSON Schema of a reply or a file",
     .reply = Reply::json,
     .argument = Argument::schema,
     .argumentNeeded = true },
   { .verb = Verb::metrics,
     .words = { "metrics" },
     .help = "counts and installations for Prometheus",
     .reply = Reply::text },
   { .verb = Verb::types,
     .words = { "types" },
     .help = "the program's registered classes, or all about one",
     .reply = Reply::textOrJson,
     .argument = Argument::className },
   { .verb = Verb::completion,
     .words = { "completion" },
     .help = "what a shell reads to complete commands",
     .argument = Argument::shell,
     .argumentNeeded = true },
   { .verb = Verb::complete,
     .words = { "complete-words" },
     .help = "ways to complete the last word, for shells",
     .argument = Argument::words,
     .hidden = true },
   { .verb = Verb::help,
     .words = { "help" },
     .help = "the commands, or what may follow a command",
     .reply = Reply::text,
     .argument = Argument::words },
   { .verb = Verb::leave, .words = { "exit" }, .help = "leave the program", .linesOnly = true },
   { .verb = Verb::leave, .words = { "quit" }, .help = "leave the program", .linesOnly = true },
   { .verb = Verb::leave, .words = { "end" }, .help = "leave the program", .linesOnly = true },
};

constexpr GroupRow groups[] = {
   { "show", "show policies" },
   { "clear", "clear counters" },
   { "traffic-policy", "traffic policies" },
   { "counters", "their counters" },
};

constexpr OptionRow options[] = {
   { Option::policy, "policy", Argument::policy, "this policy only" },
   { Option::summary, "summary", Argument::none, "rules without their conditions and actions" },
   { Option::detail, "detail", Argument::none,
     "lists of VRFs and interfaces in full; otherwise text shows three names" },
   { Option::errors, "errors", Argument::none,
     "where the installation failed and why, in place of the rules", OptionSet( Option::detail ) },
   { Option::counters, "counters", Argument::none, "the counts, in place of the rules" },
   { Option::perInterface, "per-interface", Argument::none,
     "counts of each interface; otherwise bytes beside the packets of named counters" },
   { Option::rule, "rule", Argument::rule, "this rule only, of the policies that have it" },
   { Option::interface, "interface", Argument::interface,
     "policies configured, applied or failed on this interface" },
   { Option::vrf, "vrf", Argument::vrf, "policies configured, applied or failed in this VRF" },
   { Option::failed, "failed", Argument::none, "policies whose installation failed here" },
   { Option::nonzero, "nonzero", Argument::none, "rules whose count is not 0" },
   { Option::unused, "unused", Argument::none, "rules that count and whose count is 0",
     OptionSet( Option::nonzero ) },
   { Option::raw, "raw", Argument::none, "counts of the hardware, not those since the last clear" },
   { Option::rates, "rates", Argument::none,
     "packets and bits a second of rules and counters, the busiest first; interval: of how long",
     OptionSet( Option::summary, Option::detail, Option::errors, Option::counters,
                Option::perInterface, Option::rule, Option::interface, Option::vrf, Option::failed,
                Option::nonzero, Option::unused, Option::raw ) },
   { Option::interval, "interval", Argument::seconds, "repeat the reply so often" },
   { Option::count, "count", Argument::number, "so many times", OptionSet( Option::rates ),
     OptionSet( Option::interval ) },
};

constexpr PipeRow pipes[] = {
   { .pipe = Pipe::include,
     .word = "include",
     .argument = Argument::text,
     .help = "lines that have the text" },
   { .pipe = Pipe::exclude,
     .word = "exclude",
     .argument = Argument::text,
     .help = "lines that have it not" },
   { .pipe = Pipe::begin,
     .word = "begin",
     .argument = Argument::text,
     .help = "the first line that has the text and all after it" },
   { .pipe = Pipe::count,
     .word = "count",
     .argument = Argument::none,
     .help = "the number of lines alone",
     .last = true },
   { .pipe = Pipe::json,
     .word = "json",
     .argument = Argument::none,
     .help = "the reply as JSON",
     .last = true,
     .alone = true },
};

constexpr ProgramOptionRow programOptions[] = {
   { 's', "state", "SOURCE", "what to read: a file, - for standard input, or sonic: and a place" },
   { 'c', "counter-store", "FILE", "where the counts at the last clear are kept" },
   { 't', "trace", "LEVELS", "trace levels to write to standard error: 8, 7,8 or 1-8" },
   { 'j', "json", "", "JSON instead of text, for replies and errors" },
   { 'p', "pager", "COMMAND", "show replies with this command, at a terminal" },
   { 'f', "fail-fast", "", "end at the first line of standard input that fails" },
   { 'o', "openmetrics", "", "metrics as OpenMetrics" },
   { 'm', "metrics-rules", "WORD", "metrics with rules, one series each: yes or no" },
   { 'h', "help", "", "print this help and exit" },
   { 'v', "version", "", "print the version and exit" },
};

// Rows are found by their place.
constexpr bool standInPlace() {
   unsigned place = 0;
   for ( OptionRow const & row : options ) {
      if ( static_cast< unsigned >( row.option ) != place++ ) {
         return false;
      }
   }
   bool const all = place == optionCount;
   place = 0;
   for ( ArgumentRow const & row : arguments ) {
      if ( static_cast< unsigned >( row.argument ) != place++ ) {
         return false;
      }
   }
   return all && place == argumentCount;
}
static_assert( standInPlace() );

} // namespace

std::optional< double > parseSeconds( std::string_view text ) {
   constexpr double year = 366.0 * 24 * 3600;
   double value = 0;
   auto const [end, error] =
      std::from_chars( text.data(), text.data() + text.size(), value, std::chars_format::fixed );
   bool const whole = error == std::errc() && end == text.data() + text.size();
   return whole && value >= 0.001 && value <= year ? std::optional( value ) : std::nullopt;
}

std::optional< unsigned > parseCount( std::string_view text ) {
   unsigned value = 0;
   auto const [end, error] = std::from_chars( text.data(), text.data() + text.size(), value );
   bool const whole = error == std::errc() && end == text.data() + text.size();
   return whole && value > 0 ? std::optional( value ) : std::nullopt;
}

std::span< CommandRow const > commandRows() {
   return commands;
}

std::span< OptionRow const > optionRows() {
   return options;
}

std::span< PipeRow const > pipeRows() {
   return pipes;
}

std::span< ProgramOptionRow const > programOptionRows() {
   return programOptions;
}

ArgumentRow const & argumentRow( Argument argument ) {
   return arguments[static_cast< size_t >( argument )];
}

OptionRow const & optionRow( Option option ) {
   return options[static_cast< size_t >( option )];
}

std::string_view groupHelp( std::string_view word ) {
   auto const * row = std::ranges::find( groups, word, &GroupRow::word );
   return row != std::end( groups ) ? row->help : "";
}

bool exclude( Option a, Option b ) {
   return optionRow( a ).excludes.has( b ) || optionRow( b ).excludes.has( a );
}

bool lacksNeed( Option option, OptionSet given ) {
   OptionSet const needs = optionRow( option ).needs;
   return !needs.empty() && !needs.meets( given );
}

bool excluded( Option option, OptionSet given ) {
   return std::ranges::any_of( options, [&]( OptionRow const & row ) {
      return given.has( row.option ) && exclude( row.option, option );
   } );
}

} // namespace tpcli
