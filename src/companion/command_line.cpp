#include "companion/command_line.h"

#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include <fmt/format.h>

#include "base/standard_descriptors.h"
#include "base/termination.h"
#include "companion/descriptor.h"
#include "companion/errors.h"
#include "companion/new_file.h"
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

// The table of options as getopt_long reads it. What it returns for an option is `first_row` and the number of its row.
class Grammar {
 public:
  explicit Grammar(std::span<const OptionEntry> entries) : _letters("-:") {
    // Reserved, so that the texts of short names stay where they are.
    _names.reserve(entries.size());
    for (const OptionEntry& entry : entries) {
      const int argument = entry.value.empty() ? no_argument : required_argument;
      const int row = static_cast<int>(_names.size());
      _names.emplace_back(entry.key());
      _options.push_back({_names.back().c_str(), argument, nullptr, first_row + row});
      if (entry.names.starts_with("--")) continue;
      _rows_of_letters.emplace_back(entry.names[1], row);
      _letters += entry.names[1];
      if (argument == required_argument) _letters += ':';
    }
    _options.push_back({nullptr, 0, nullptr, 0});
  }

  static constexpr int first_row = 256;

  // In order, files as the option 1, and a missing value told apart from an unknown option.
  const char* letters() const { return _letters.c_str(); }
  const ::option* options() const { return _options.data(); }

  // The row of an option by what getopt_long returned for it.
  std::size_t row(int code) const {
    if (code >= first_row) return static_cast<std::size_t>(code - first_row);
    const auto found = std::find_if(_rows_of_letters.begin(), _rows_of_letters.end(),
                                    [&](const auto& letter) { return letter.first == code; });
    return static_cast<std::size_t>(found->second);
  }

 private:
  std::string _letters;
  std::vector<std::string> _names;
  std::vector<::option> _options;
  std::vector<std::pair<char, int>> _rows_of_letters;
};

// The long name that a word gives, or an empty text.
std::string_view _long_name(std::string_view word) {
  if (!word.starts_with("--")) return {};
  return word.substr(2, word.find('=') - 2);
}

bool _has_option(const Program& program, std::string_view long_name) {
  return std::any_of(program.options.begin(), program.options.end(),
                     [&](const OptionEntry& entry) { return entry.key() == long_name; });
}

// Why getopt_long did not take the option that begins with this word; `letter` is the short option in question, or 0.
std::string _why_refused(const Program& program, std::string_view word, int letter) {
  if (!word.starts_with("--")) return fmt::format("there is no option -{}", static_cast<char>(letter));
  const std::string_view name = _long_name(word);
  if (_has_option(program, name)) return fmt::format("--{} takes no value, found \"{}\"", name, word);
  return fmt::format("there is no option --{}", name);
}

constexpr const char* no_memory = "not enough memory";

// Works without memory, if need be with less to say.
int _complain(const Program& program, const char* message, int status) {
  std::string shown;
  try {
    shown = printable(message);
    message = shown.c_str();
  } catch (const std::bad_alloc&) {
    message = no_memory;
  }
  const auto name_length = static_cast<int>(program.name.size());
  std::fprintf(stderr, "%.*s: %s\n", name_length, program.name.data(), message);
  if (status == 2) std::fprintf(stderr, "Try '%.*s --help' for more information.\n", name_length, program.name.data());
  return status;
}

}  // namespace

CommandLine split_command_line(const Program& program, const std::vector<std::string>& arguments) {
  const Grammar grammar(program.options);
  std::vector<std::string> words(arguments);
  words.emplace(words.begin(), program.name);
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words)
    argv.push_back(word.data());
  argv.push_back(nullptr);
  const int argc = static_cast<int>(words.size());

  CommandLine line;
  const auto complain = [&](std::string complaint) {
    if (line.complaint.empty()) line.complaint = std::move(complaint);
  };
  ::opterr = 0;
  ::optind = 0;  // begin anew
  for (;;) {
    const int at = std::max(::optind, 1);
    const int code = ::getopt_long(argc, argv.data(), grammar.letters(), grammar.options(), nullptr);
    if (code == -1) break;
    const std::string_view word = words[static_cast<std::size_t>(at)];
    // getopt_long takes abbreviations as well.
    const bool unknown = word.starts_with("--") && !_has_option(program, _long_name(word));
    if (code == 1) {
      line.files.emplace_back(::optarg);
    } else if (code == '?' || unknown) {
      complain(_why_refused(program, word, ::optopt));
    } else if (code == ':') {
      complain(fmt::format("{}: expected a value, found none", word));
    } else {
      const std::size_t row = grammar.row(code);
      const OptionEntry& entry = program.options[row];
      line.options.push_back({row, entry.key(), entry.value.empty() ? "" : ::optarg});
    }
  }
  line.files.insert(line.files.end(), words.begin() + ::optind, words.end());
  if (std::find(line.files.begin(), line.files.end(), "") != line.files.end())
    complain("expected the name of a FILE, found \"\"");
  if (line.files.size() > program.most_files)
    complain(fmt::format("expected {} FILE at most, found a further one: {}", program.most_files,
                         line.files[program.most_files]));
  return line;
}

std::string shell_line(const Program& program, const std::vector<std::string>& arguments) {
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_=./,:+@%";
  std::string line(program.name);
  for (const std::string& argument : arguments) {
    line += ' ';
    if (!argument.empty() && argument.find_first_not_of(plain) == std::string::npos) {
      line += argument;
      continue;
    }
    line += '\'';
    for (const char c : argument)
      line += c == '\'' ? "'\\''" : std::string(1, c);
    line += '\'';
  }
  return line;
}

std::string help(const Program& program) {
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

std::string_view version_number() {
  return NGREX_VERSION;
}

std::string version(const Program& program) {
  return fmt::format("{} {}\n", program.name, NGREX_VERSION);
}

std::size_t whole_number(const GivenOption& given, std::size_t least) {
  const std::string& value = given.value;
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || end != value.data() + value.size() || number < least)
    reject(given, fmt::format("a whole number from {}", least));
  return number;
}

void reject(const GivenOption& given, std::string_view expected) {
  throw usage_error(fmt::format("--{}: expected {}, found \"{}\"", given.key, expected, given.value));
}

int run_companion(const Program& program, int argc, const char* const* argv,
                  int (*work)(const std::vector<std::string>& arguments)) {
  const auto at_start = std::signal(SIGPIPE, SIG_IGN);
  end_with_words([](const char* reason) {
    std::fprintf(stderr, "%s: %s\n", ::program_invocation_short_name, reason == nullptr ? no_memory : reason);
    remove_unfinished_file();
    std::_Exit(EXIT_FAILURE);
  });
  if (!occupy_standard_descriptors())
    return _complain(program, "a standard stream is closed and cannot be opened on /dev/null", 1);
  try {
    const int status = work(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
    // What a file system tells only now.
    if (::close(STDOUT_FILENO) == 0) return status;
    throw output_error(fmt::format("cannot write to standard output: {}", system_reason()));
  } catch (const usage_error& error) {
    return _complain(program, error.what(), 2);
  } catch (const reader_gone& error) {
    if (at_start == SIG_IGN) return _complain(program, error.what(), 1);
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
    return 128 + SIGPIPE;  // where the signal is blocked
  } catch (const std::bad_alloc&) {
    return _complain(program, no_memory, 1);
  } catch (const std::exception& error) {
    return _complain(program, error.what(), 1);
  }
}

}  // namespace colx
