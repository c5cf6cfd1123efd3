#pragma once

// The command line of a companion program: one table of options feeds the parser, the help and the settings.

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/errors.h"

namespace colx {

// One option as the user sees it.
struct OptionEntry {
  std::string_view names;  // with their hyphens, separated by commas: a letter if there is one, then the long name
  std::string_view value;  // the name of its value in the help; empty: a switch
  std::string_view help;

  // The long name without hyphens, by which messages call the option.
  constexpr std::string_view key() const { return names.substr(names.rfind("--") + 2); }
};

// One option as it was given.
struct GivenOption {
  std::size_t row;       // in the table of options
  std::string_view key;  // as OptionEntry::key
  std::string value;     // empty for a switch
};

// One row of the table of options of a program: the option and what it does to the program's settings. A value that
// will not do makes `apply` throw usage_error.
template <typename Settings>
struct Option {
  OptionEntry entry;
  void (*apply)(Settings& settings, const GivenOption& given);
  bool is_question = false;  // asks for something to be printed in place of any work
};

// The rows of a table as the user sees them.
template <typename Settings, std::size_t count>
constexpr std::array<OptionEntry, count> entries_of(const std::array<Option<Settings>, count>& rows) {
  std::array<OptionEntry, count> entries;
  for (std::size_t i = 0; i < count; ++i)
    entries[i] = rows[i].entry;
  return entries;
}

// What a program says of itself. All texts outlive it.
struct Program {
  std::string_view name;
  std::string_view operands;  // of the usage line, such as "[FILE]"
  std::string_view purpose;   // above the options
  std::string_view notes;     // below them
  std::span<const OptionEntry> options;
  std::size_t most_files;  // operands that it takes
};

// A command line taken apart, options in the order in which they were given.
struct CommandLine {
  std::vector<GivenOption> options;
  std::vector<std::string> files;
  std::string
      complaint;  // about the first argument that is wrong; empty: none is. What follows it was read all the same.
};

// Takes the arguments, without the program's name, apart. Options and files may stand in any order; a value may begin
// with a hyphen; "--" ends the options; long names are not abbreviated, since a new option would change the meaning of
// abbreviations. Complains of an option that the program does not have, a value too few or too many, and too many
// files.
CommandLine split_command_line(const Program& program, const std::vector<std::string>& arguments);

// Takes the arguments apart and applies the options to `settings`, in the order in which they were given. When one of
// them is a question, the first such is applied and nothing else, whatever else is wrong with the line: returns true.
// Otherwise sets `files` and returns false. Throws usage_error.
template <typename Settings, std::size_t count>
bool apply_command_line(const Program& program, const std::array<Option<Settings>, count>& rows,
                        const std::vector<std::string>& arguments, Settings& settings,
                        std::vector<std::string>& files) {
  CommandLine line = split_command_line(program, arguments);
  for (const GivenOption& given : line.options) {
    if (!rows[given.row].is_question) continue;
    rows[given.row].apply(settings, given);
    return true;
  }
  if (!line.complaint.empty()) throw usage_error(line.complaint);
  for (const GivenOption& given : line.options)
    rows[given.row].apply(settings, given);
  files = std::move(line.files);
  return false;
}

// A command line as it can be given to a shell, quoted where that is needed.
std::string shell_line(const Program& program, const std::vector<std::string>& arguments);

// What --help prints.
std::string help(const Program& program);

// The version of this build, such as 1.2.3.
std::string_view version_number();

// What --version prints.
std::string version(const Program& program);

// The value of an option that expects a number from `least` upwards. Throws usage_error.
std::size_t whole_number(const GivenOption& given, std::size_t least);

// Throws usage_error for a value that an option does not take.
[[noreturn]] void reject(const GivenOption& given, std::string_view expected);

// Runs the work of a program and returns its exit status. A failure is told on standard error under the program's name:
// usage_error makes the status 2 and points to --help, anything else makes it 1. When the reader of standard output
// goes away the run is ended in good order and the program then dies of SIGPIPE without a word, as GNU tools do; where
// that signal was ignored from the start it counts as a failed write. No other stream can end it so: a reader of
// standard error that goes away costs no file.
int run_companion(const Program& program, int argc, const char* const* argv,
                  int (*work)(const std::vector<std::string>& arguments));

}  // namespace colx
