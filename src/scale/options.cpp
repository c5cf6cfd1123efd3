#include "scale/options.h"

#include <algorithm>
#include <array>
#include <sstream>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "companion/memory_size.h"
#include "options/params.h"
#include "scale/steps.h"

namespace colx::scale {

namespace {

constexpr std::string_view commands[] = {"run", "plan", "write", "steps", "drop"};

void _print_help(Options& options, const GivenOption& given);
void _print_version(Options& options, const GivenOption& given);

constexpr std::array<Option<Options>, 12> _rows = {{
    {{"--jobs", "K", "processes at a time; the default is the number of processors"},
     [](Options& options, const GivenOption& given) { options.jobs = whole_number(given, 1); }},
    {{"--memory", "SIZE",
      "memory for each process, such as 512M or 2G; the default is three quarters of what the "
      "machine has, divided by the jobs"},
     [](Options& options, const GivenOption& given) { options.memory = memory_size(given); }},
    {{"--work", "DIR",
      "folder of intermediate files, which is kept; the default is one beside the output, which is "
      "removed at the end"},
     [](Options& options, const GivenOption& given) {
       if (given.value.empty()) reject(given, "the name of a folder");
       options.work = given.value;
     }},
    {{"--drop", "",
      "with --work: remove intermediate files as soon as no later step needs them; what stays is what "
      "write reads"},
     [](Options& options, const GivenOption&) { options.drop = true; }},
    {{"--exact", "",
      "write counts beyond 32 bits as they are, and measures that are computed from them; ngrex would stop at "
      "4294967295"},
     [](Options& options, const GivenOption&) { options.exact = true; }},
    {{"--shard", "SIZE",
      "bytes of a datafile that are a task of their own; the default depends on the corpus and on the jobs"},
     [](Options& options, const GivenOption& given) { options.shard = memory_size(given); }},
    {{"--keep-going", "",
      "when a task fails, do the other tasks of its step all the same, and say all failures at the end"},
     [](Options& options, const GivenOption&) { options.keep_going = true; }},
    {{"--quiet", "", "no progress bar; warnings and errors are said all the same"},
     [](Options& options, const GivenOption&) { options.quiet = true; }},
    {{"--task", "K", "of a step the first task to be done, counted from 0, which is the default"},
     [](Options& options, const GivenOption& given) { options.task = whole_number(given, 0); }},
    {{"--of", "N", "of a step every N-th task from --task on; the default is 1"},
     [](Options& options, const GivenOption& given) { options.of = whole_number(given, 1); }},
    {{"--help", "", "print this help"}, _print_help, true},
    {{"--version", "", "print the version"}, _print_version, true},
}};

constexpr auto _entries = entries_of(_rows);

void _print_help(Options&, const GivenOption&) {
  std::ostringstream ngrex_options;
  print_options(ngrex_options);
  write_to_standard_output(help(program) + "\n" + ngrex_options.str());
}

void _print_version(Options&, const GivenOption&) {
  write_to_standard_output(version(program));
}

// Whether the word, up to a value that is joined to it, is an option of ngrex-scale's own.
bool _is_own(const std::string& word) {
  return std::any_of(_entries.begin(), _entries.end(),
                     [&](const OptionEntry& entry) { return entry.names == word.substr(0, word.find('=')); });
}

// Whether the word is an option of ngrex-scale's own that takes the next word as its value.
bool _takes_value(const std::string& word) {
  return std::any_of(_entries.begin(), _entries.end(),
                     [&](const OptionEntry& entry) { return entry.names == word && !entry.value.empty(); });
}

// Parts the words of ngrex's options and the command, which go to `options`, from our own. Throws usage_error for what
// is neither.
std::vector<std::string> _part(const std::vector<std::string>& arguments, Options& options) {
  std::vector<const char*> words;
  words.reserve(arguments.size());
  for (const std::string& argument : arguments)
    words.push_back(argument.c_str());
  const int count = static_cast<int>(words.size());
  std::vector<std::string> own;
  for (int i = 0; i < count;) {
    const std::string& word = arguments[static_cast<std::size_t>(i)];
    int taken = 1;
    if (word.starts_with("--")) {
      if (_takes_value(word) && i + 1 < count) ++taken;
      own.insert(own.end(), words.begin() + i, words.begin() + i + taken);
      // Of one that there is not, which will be told, the next word may be the value.
      if (!_is_own(word) && word != "--" && i + 1 < count && *words[static_cast<std::size_t>(i) + 1] != '-') ++taken;
    } else if ((taken = take_option(count, words.data(), i)) > 0) {
      options.words.insert(options.words.end(), words.begin() + i, words.begin() + i + taken);
    } else if (options.command.empty() && !word.empty() && !word.starts_with("-")) {
      options.command = word;
      taken = 1;
    } else {
      throw usage_error(word.starts_with("-") ? fmt::format("there is no option {}", word)
                                              : fmt::format("expected options only, found \"{}\"", word));
    }
    i += taken;
  }
  return own;
}

bool _is_step(const std::string& command) {
  return std::find(std::begin(step_names), std::end(step_names), command) != std::end(step_names);
}

// Whether an option would say nothing to a command: shards and memory are those of the plan.
bool _is_foreign(std::string_view option, const std::string& command) {
  if (command == "steps") return true;
  if (option == "--task" || option == "--of") return !_is_step(command);
  if (option == "--memory" || option == "--shard") return command != "run" && command != "plan";
  if (option == "--drop") return command != "run";
  if (option == "--quiet") return command != "run" && command != "write";
  if (option == "--keep-going") return command != "run" && !_is_step(command);
  if (option == "--exact") return command != "run" && command != "write";
  return option == "--jobs" && (command == "drop" || _is_step(command));
}

// Throws usage_error when one of our own options, or of ngrex's, is not for the command.
void _check_meant(const std::vector<std::string>& own, const Options& options) {
  for (std::size_t i = 0; i < own.size(); i += _takes_value(own[i]) ? 2U : 1U) {
    const std::string option = own[i].substr(0, own[i].find('='));
    if (_is_foreign(option, options.command)) throw usage_error(fmt::format("{} takes no {}", options.command, option));
  }
  if (options.command == "steps" && !options.words.empty())
    throw usage_error(fmt::format("{} takes no {}", options.command, options.words[0]));
  // ngrex without options prints a summary of them.
  if ((options.command == "run" || options.command == "plan") && options.words.empty())
    throw usage_error(fmt::format("{}: expected -i LIST, -n SIZE and -o FILE, found none of them", options.command));
}

}  // namespace

constexpr Program program = {"ngrex-scale",
                             "COMMAND",
                             "Counts as ngrex does, in many processes and beyond memory, and writes the same files.",
                             "COMMAND is run, which does all the work, or write, which writes the files again\n"
                             "from a folder given by --work. An engine that spreads the work over machines\n"
                             "takes plan, with the options of run, and then the steps one after another: scan,\n"
                             "number, map, reduce, arrange, order, count, collect, merge and format, each of\n"
                             "which has tasks that can be done at the same time. The command steps prints\n"
                             "their names, drop removes what no later step needs from a folder.\n"
                             "\n"
                             "The options of ngrex mean what they mean there:",
                             _entries,
                             0};

std::optional<Options> read_options(const std::vector<std::string>& arguments) {
  Options options;
  static std::vector<std::string> words;  // the settings point into them
  words = arguments;
  const std::vector<std::string> own = _part(words, options);
  std::vector<std::string> files;
  if (apply_command_line(program, _rows, own, options, files)) return std::nullopt;
  const bool is_known = std::find(std::begin(commands), std::end(commands), options.command) != std::end(commands);
  if (!is_known && !_is_step(options.command))
    throw usage_error(options.command.empty() ? "expected a command, found none"
                                              : fmt::format("there is no command {}", options.command));
  _check_meant(own, options);
  return options;
}

}  // namespace colx::scale
