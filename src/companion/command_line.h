#pragma once

// The command line of a companion program: one table of options feeds the parser and the help.

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace colx {

// One option as the user sees it.
struct OptionEntry {
  std::string_view names;  // with their hyphens, separated by commas, the long one last
  std::string_view value;  // the name of its value in the help; empty: a switch
  std::string_view help;

  // The long name without hyphens, by which the program knows the option.
  std::string_view key() const { return names.substr(names.rfind("--") + 2); }
};

// What a program says of itself. All texts outlive it.
struct Program {
  std::string_view name;
  std::string_view operands;  // of the usage line, such as "[FILE]"
  std::string_view purpose;   // above the options
  std::string_view notes;     // below them
  std::span<const OptionEntry> options;
  std::size_t most_files;  // operands that it takes
};

// One option as it was given.
struct GivenOption {
  std::string_view key;
  std::string value;  // empty for a switch
};

// A command line taken apart, options in the order in which they were given.
struct CommandLine {
  std::vector<GivenOption> options;
  std::vector<std::string> files;
};

// Takes the arguments, without the program's name, apart. A value may begin with a hyphen; "--" ends the options.
// Throws usage_error for an option that the program does not have, a value too few or too many, and too many files,
// unless --help or --version was given as well.
CommandLine parse_command_line(const Program& program, const std::vector<std::string>& arguments);

// What --help and --version print; empty for every other option.
std::string answer(const Program& program, std::string_view key);

// A number that an option expects, from `least` upwards. Throws usage_error.
std::size_t whole_number(std::string_view key, std::string_view value, std::size_t least);

// Runs the work of a program and returns its exit status. A failure is told on standard error under the program's name:
// usage_error makes the status 2 and points to --help, anything else makes it 1. A reader of standard output that goes
// away counts as a failed write.
int run_companion(const Program& program, int argc, const char* const* argv,
                  int (*work)(const std::vector<std::string>& arguments));

}  // namespace colx
