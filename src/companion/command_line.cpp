#include "companion/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include <fmt/format.h>

#include "companion/errors.h"

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

// The arguments as the parser takes them, from the last to the first. An empty value behind "=" becomes an argument of
// its own; the parser would take the next one for it.
std::vector<std::string> _backwards(const Program& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> result;
  for (const std::string& argument : arguments) {
    const bool has_empty_value =
        std::any_of(program.options.begin(), program.options.end(), [&](const OptionEntry& entry) {
          return !entry.value.empty() && argument == fmt::format("--{}=", entry.key());
        });
    result.push_back(has_empty_value ? argument.substr(0, argument.size() - 1) : argument);
    if (has_empty_value) result.emplace_back();
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

int _complain(const Program& program, std::string_view message, int status) {
  std::fputs(fmt::format("{}: {}\n", program.name, message).c_str(), stderr);
  return status;
}

}  // namespace

CommandLine parse_command_line(const Program& program, const std::vector<std::string>& arguments) {
  CommandLine result;
  CLI::App app;
  app.set_help_flag();
  for (const OptionEntry& entry : program.options) {
    const auto note = [&result, key = entry.key()](const std::string& value) {
      result.options.push_back({key, value});
    };
    const std::string names(entry.names);
    CLI::Option* const option = entry.value.empty()
                                    ? app.add_flag_callback(names, [note] { note(""); })
                                    : app.add_option_function<std::string>(names, note)->allow_extra_args(false);
    // Noted at once, options stay in their order; with "last" an option given again does not count as an error.
    option->type_name(std::string(entry.value));
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)->trigger_on_parse();
  }
  app.add_option("FILE", result.files);
  try {
    app.parse(_backwards(program, arguments));
  } catch (const CLI::ParseError& error) {
    throw usage_error(error.what());
  }
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
  try {
    return work(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
  } catch (const usage_error& error) {
    return _complain(program, fmt::format("{}\nTry '{} --help' for more information.", error.what(), program.name), 2);
  } catch (const std::bad_alloc&) {
    return _complain(program, "not enough memory", 1);
  } catch (const std::exception& error) {
    return _complain(program, error.what(), 1);
  }
}

}  // namespace colx
