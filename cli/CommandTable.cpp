#include "cli/CommandTable.h"

#include "TrafficPolicy/platform/vorn/TypeRecord.h"

#include <algorithm>

namespace tpcli {

namespace {

std::vector< std::string_view > classNames() {
   std::vector< std::string_view > names;
   for ( Vorn::TypeRecord const * type : Vorn::TypeRecord::sorted() ) {
      names.push_back( type->name() );
   }
   return names;
}

constexpr ArgumentRow arguments[] = {
   { Argument::none, "", "" },
   { Argument::policy, "NAME", "the name of a policy", true },
   { Argument::className, "NAME", "the name of a class", false, classNames },
   { Argument::text, "TEXT", "a text", true },
   { Argument::words, "COMMAND", "a command" },
};

constexpr OptionSet showOptions( Option::policy, Option::summary, Option::detail, Option::errors,
                                 Option::counters, Option::perInterface );

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
   { .verb = Verb::clear,
     .words = { "clear", "traffic-policy", "counters" },
     .help = "let the counts that the shows print begin at zero" },
   { .verb = Verb::types,
     .words = { "types" },
     .help = "the program's registered classes, or all about one",
     .reply = Reply::textOrJson,
     .argument = Argument::className },
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
   { 's', "state", "FILE", "the state file; - is standard input" },
   { 'c', "counter-store", "FILE", "where the counts at the last clear are kept" },
   { 't', "trace", "LEVELS", "trace levels to write to standard error: 8, 7,8 or 1-8" },
   { 'j', "json", "", "JSON instead of text, for replies and errors" },
   { 'p', "pager", "COMMAND", "show replies with this command, at a terminal" },
   { 'f', "fail-fast", "", "end at the first line of standard input that fails" },
   { 'h', "help", "", "print this help and exit" },
   { 'v', "version", "", "print the version and exit" },
};

} // namespace

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

bool excluded( Option option, OptionSet given ) {
   return std::ranges::any_of( options, [&]( OptionRow const & row ) {
      return given.has( row.option ) && exclude( row.option, option );
   } );
}

} // namespace tpcli
