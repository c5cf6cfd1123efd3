#include "companion/command_line.h"

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "companion/utf8.h"

namespace colx {

namespace {

constexpr std::size_t line_width = 79;
constexpr std::size_t help_column = 28;

// Appends words to a text, broken into lines that begin at the column at which the text stands.
void _append_wrapped(std::string& text, std::string_view words) {
  std::size_t column = help_column;
  while (!words.empty()) {
    const std::size_t end = std::min(words.find(' '), words.size());
    if (column > help_column && column + 1 + end > line_width) {
      text += '\n' + std::string(help_column, ' ');
      column = help_column;
    } else if (column > help_column) {
      text += ' ';
      ++column;
    }
    text += words.substr(0, end);
    column += end;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  text += '\n';
}

// Stands before a bracket at the beginning of an argument, as the parser would take [a,b] for a list of two.
constexpr char bracket_shield = '\x01';

std::string _unshielded(const std::string& argument) {
  return argument.starts_with(std::string{bracket_shield, '['}) ? argument.substr(1) : argument;
}

// The arguments as the parser takes them, from the last to the first, with brackets shielded. An empty value behind "="
// becomes an argument of its own; the parser would take the next one for it. Throws usage_error for a switch with a
// value, which the parser would take for its opposite or for itself.
std::vector<std::string> _backwards(const Program& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> result;
  for (const std::string& argument : arguments) {
    bool has_empty_value = false;
    for (const OptionEntry& entry : program.options) {
      const std::string with_value = fmt::format("--{}=", entry.key());
      if (entry.value.empty() && argument.starts_with(with_value))
        throw usage_error(fmt::format("--{} takes no value, found \"{}\"", entry.key(), argument));
      has_empty_value = has_empty_value || argument == with_value;
    }
    if (has_empty_value) {
      result.push_back(argument.substr(0, argument.size() - 1));
      result.emplace_back();
    } else {
      result.push_back(argument.starts_with('[') ? bracket_shield + argument : argument);
    }
  }
  std::reverse(result.begin(), result.end());
  return result;
}

std::string _help(const Program& program) {
  std::string text =
      fmt::format("Usage: {} [options] {}\n{}\n\nOptions:\n", program.name, program.operands, program.purpose);
  for (const OptionEntry& entry : program.options) {
    std::string line = entry.names.starts_with("--") ? "      " : "  ";
    for (const char c : entry.names)
      line += c == ',' ? ", " : std::string(1, c);
    if (!entry.value.empty()) line.append(" ").append(entry.value);
    if (line.size() + 2 > help_column)
      text += line + '\n' + std::string(help_column, ' ');
    else
      text += line + std::string(help_column - line.size(), ' ');
    _append_wrapped(text, entry.help);
  }
  return text + fmt::format("\n{}\n", program.notes);
}

// Opens those of the three standard descriptors that are closed, so that no file takes their place and gets what was
// meant for them. The wrong way round, so that using one is still an error.
void _occupy_standard_descriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (::fcntl(descriptor, F_GETFD) < 0) ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

int _complain(const Program& program, std::string_view message, int status) {
  std::fputs(fmt::format("{}: {}\n", program.name, printable(message)).c_str(), stderr);
  if (status == 2) std::fputs(fmt::format("Try '{} --help' for more information.\n", program.name).c_str(), stderr);
  return status;
}

}  // namespace

CommandLine parse_command_line(const Program& program, const std::vector<std::string>& arguments) {
  CommandLine result;
  CLI::App app;
  app.set_help_flag();
  for (const OptionEntry& entry : program.options) {
    const auto note = [&result, key = entry.key()](const std::string& value) {
      result.options.push_back({key, _unshielded(value)});
    };
    const std::string names(entry.names);
    CLI::Option* const option = entry.value.empty()
                                    ? app.add_flag_callback(names, [note] { note(""); })
                                    : app.add_option_function<std::string>(names, note)->allow_extra_args(false);
    // Noted at once, options stay in their order; with "last" an option given again does not count as an error.
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)->trigger_on_parse();
  }
  app.add_option("FILE", result.files);
  try {
    app.parse(_backwards(program, arguments));
  } catch (const CLI::ParseError& error) {
    // A question is answered all the same.
    const bool was_asked = std::any_of(result.options.begin(), result.options.end(),
                                       [&](const GivenOption& option) { return !answer(program, option.key).empty(); });
    if (was_asked) return result;
    if (error.get_name() != "ArgumentMismatch") throw usage_error(error.what());
    throw usage_error(fmt::format("{}: expected a value, found none", arguments.back()));
  }
  for (std::string& file : result.files)
    file = _unshielded(file);
  if (std::find(result.files.begin(), result.files.end(), "") != result.files.end())
    throw usage_error("expected the name of a FILE, found \"\"");
  if (result.files.size() > program.most_files)
    throw usage_error(fmt::format("expected {} FILE at most, found a further one: {}", program.most_files,
                                  result.files[program.most_files]));
  return result;
}

std::string answer(const Program& program, std::string_view key) {
  if (key == "help") return _help(program);
  if (key == "version") return fmt::format("{} {}\n", program.name, NGREX_VERSION);
  return "";
}

std::size_t whole_number(std::string_view key, std::string_view value, std::size_t least) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || end != value.data() + value.size() || number < least)
    throw usage_error(fmt::format("--{}: expected a whole number from {}, found \"{}\"", key, least, value));
  return number;
}

int run_companion(const Program& program, int argc, const char* const* argv,
                  int (*work)(const std::vector<std::string>& arguments)) {
  std::signal(SIGPIPE, SIG_IGN);
  _occupy_standard_descriptors();
  try {
    const int status = work(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
    // What a file system tells only now.
    if (::close(STDOUT_FILENO) == 0) return status;
    return _complain(program, fmt::format("cannot write to standard output: {}", system_reason()), 1);
  } catch (const usage_error& error) {
    return _complain(program, error.what(), 2);
  } catch (const std::bad_alloc&) {
    return _complain(program, "not enough memory", 1);
  } catch (const std::exception& error) {
    return _complain(program, error.what(), 1);
  }
}

}  // namespace colx
