#include "scale/scale.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <optional>
#include <thread>

#include <fmt/format.h>

#include "base/config.h"
#include "base/errors.h"
#include "base/notifier.h"
#include "companion/descriptor.h"
#include "companion/errors.h"
#include "companion/memory_size.h"
#include "companion/new_file.h"
#include "model/ngram.h"
#include "options/output_paths.h"
#include "options/params.h"
#include "options/start_up.h"
#include "scale/engine/plan.h"
#include "scale/engine/progress.h"
#include "scale/engine/spent_files.h"
#include "scale/engine/unfinished_output.h"
#include "scale/options.h"
#include "scale/pipeline.h"
#include "scale/single_step.h"
#include "scale/steps.h"
#include "scale/writing/write_task.h"
#include "spill/damaged_file.h"

namespace colx::scale {

namespace {

// A run that ends as one of ngrex would, everything having been said.
struct Ended {};

// Finds out whether an output can be written before the long work, and touches nothing.
void _check_output(const char* path, const char* failure) {
  if (path == nullptr) return;
  struct stat status {};
  const bool is_there = ::stat(path, &status) == 0;
  // Opening a pipe or a device may do something to whoever is at its other end.
  if (is_there && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) return;
  try {
    if (*path == '\0') throw output_error("");
    check_new_file(path);
  } catch (const output_error&) {
    throw fatal_error(std::string(failure) + path + "!");
  }
}

void _check_outputs() {
  _check_output(settings::output_file, "Cannot open output file: ");
  _check_output(settings::context_output_file, "Cannot open context output file: ");
  _check_output(settings::stats_file, "Cannot open file to save statistics: ");
  _check_output(settings::morphologic_filter_stats_file, "Cannot open file to save morphologic filter statistics: ");
}

// Whether an output goes where the bar would be.
bool _writes_to_terminal() {
  const auto is_terminal = [](const char* path) {
    struct stat status {};
    if (path == nullptr || ::stat(path, &status) != 0 || !S_ISCHR(status.st_mode)) return false;
    const int number = ::open(path, O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (number < 0) return false;
    const Descriptor file(number);
    return ::isatty(number) == 1;
  };
  return is_terminal(settings::output_file) || is_terminal(settings::context_output_file) ||
         is_terminal(settings::stats_file) || is_terminal(settings::morphologic_filter_stats_file);
}

// A folder that is used when none was named.
struct UsualFolder {
  std::string path;
  bool can_be_found = true;  // by the same command when it is given again
};

// A folder beside the output; where that is no file, in the folder for temporary files.
UsualFolder _usual_folder() {
  struct stat status {};
  const std::string output = settings::output_file;
  const bool is_file = ::stat(output.c_str(), &status) != 0 || S_ISREG(status.st_mode);
  if (is_file) return {output + ".ngrex-scale"};
  const char* const chosen = std::getenv("TMPDIR");
  std::string folder = chosen == nullptr || *chosen == '\0' ? "/tmp" : chosen;
  folder += "/ngrex-scale-XXXXXX";
  if (::mkdtemp(folder.data()) == nullptr)
    throw output_error(fmt::format("cannot make a folder {}: {}", folder, system_reason()));
  return {folder, false};
}

// Refuses a folder that holds something else: many files are made there, and some are removed, or all. The workflow
// keeps its own files in a subfolder.
void _check_work(const std::string& path, bool named) {
  std::error_code none;
  if (std::filesystem::exists(WorkFolder(path).lock_path(), none)) return;
  for (const auto& entry : std::filesystem::directory_iterator(path, none)) {
    if (named && entry.path().filename() == "workflow") continue;
    throw usage_error(
        named ? fmt::format("--work: the folder {} holds other files: name a new one", path)
              : fmt::format("the folder {} holds other files: name one for intermediate files by --work", path));
  }
}

UsualFolder _checked(UsualFolder used, bool named) {
  _check_work(used.path, named);
  return used;
}

// Uses a folder as it was asked for. One that was not named is removed at the end of a run that has ended well, and in
// any case when no other run would find it.
class UsedFolder {
 public:
  explicit UsedFolder(const std::optional<std::string>& named)
      : UsedFolder(_checked(named ? UsualFolder{*named} : _usual_folder(), named.has_value()), named.has_value()) {}
  ~UsedFolder() {
    if (!_can_be_found) _remove();
  }

  UsedFolder(const UsedFolder&) = delete;
  UsedFolder& operator=(const UsedFolder&) = delete;

  const WorkFolder& folder() const { return _folder; }

  void finish() const {
    if (!_named) _remove();
  }

 private:
  UsedFolder(const UsualFolder& used, bool named)
      : _named(named), _can_be_found(used.can_be_found), _folder(used.path), _lock(_folder) {}

  void _remove() const {
    std::error_code none;
    std::filesystem::remove_all(_folder.path(), none);
  }

  bool _named;
  bool _can_be_found;
  WorkFolder _folder;
  FolderLock _lock;
};

std::size_t _jobs(const Options& options) {
  return options.jobs != 0 ? options.jobs : std::max(std::thread::hardware_concurrency(), 1U);
}

Writing _writing(const Options& options) {
  return {_jobs(options), options.exact};
}

// Makes the plan and hands it on, with its folder, to `use`.
template <typename Use>
void _plan(const Options& options, const Notifier& error, const Use& use) {
  if (!check_settings(error)) throw Ended();
  NGram::init();
  MultiRulesFilter morphologic_filter;
  UniRulesFilter context_filter;
  std::vector<std::string> paths;
  std::uint32_t total_size = 0;
  if (!load_rules(morphologic_filter, context_filter, error) ||
      !read_and_check_input_datafiles(paths, total_size, error))
    throw Ended();
  check_output_paths(paths);
  _check_outputs();

  const UsedFolder used(options.work);
  std::vector<std::string_view> stages{"plan"};
  stages.insert(stages.end(), std::begin(step_names),
                std::end(step_names) - (settings::context_tracing_on() ? 0 : steps_of_contexts));
  stages.emplace_back("write");
  const WorkBar bar(stages, settings::n, options.command == "run" && !options.quiet && !_writes_to_terminal());
  remove_unfinished_output(used.folder());
  used.folder().drop_unfinished();
  Plan plan;
  plan.words = options.words;
  plan.morphologic_rules = morphologic_filter.rules();
  plan.context_rules = context_filter.rules();
  const std::size_t jobs = _jobs(options);
  PlanWishes wishes;
  wishes.jobs = jobs;
  wishes.shard_size = options.shard;
  wishes.may_start_over = !options.work;
  wishes.memory = options.memory != 0 ? options.memory : memory_of_machine() / 4 * 3 / jobs;
  make_plan(used.folder(), paths, wishes, plan);
  use(used, plan);
}

void _run(const Options& options, const Notifier& error) {
  _plan(options, error, [&](const UsedFolder& used, const Plan& plan) {
    const bool drop = options.drop || !options.work;
    const OnFailure on_failure = options.keep_going ? OnFailure::keep_going : OnFailure::stop;
    count_all(used.folder(), plan, _jobs(options), on_failure, drop,
              [&] { write_files(used.folder(), plan, _writing(options)); });
    used.finish();
  });
}

// Sets every setting that says how files are written to its start value.
void _forget_writing() {
  settings::output_file = nullptr;
  settings::context_output_file = nullptr;
  settings::stats_file = nullptr;
  settings::morphologic_filter_stats_file = nullptr;
  settings::precision = constants::default_precision;
  settings::all_thresholds_together = false;
  settings::thresholds = Thresholds();
  settings::sieves = Sieves();
}

// Whether a word is one of the options that say how files are written, rather than what is counted.
bool _is_of_writing(const std::string& option) {
  constexpr std::string_view letters = "opst";
  return letters.find(option[1]) != std::string_view::npos || option == "-c" || option.starts_with("-fs");
}

// Sets the settings from options that say how files are written. Throws usage_error for others.
void _apply(const std::vector<std::string>& words) {
  std::vector<const char*> argv;
  argv.reserve(words.size());
  for (const std::string& word : words)
    argv.push_back(word.c_str());
  const int count = static_cast<int>(argv.size());
  for (int i = 0; i < count;) {
    if (!_is_of_writing(argv[static_cast<std::size_t>(i)]))
      throw usage_error(
          fmt::format("write takes no {}: what is counted is in the folder", words[static_cast<std::size_t>(i)]));
    i += std::max(take_option(count, argv.data(), i), 1);
  }
}

void _write(const Options& options, const Notifier& error) {
  _forget_writing();  // what the command line says holds behind what the folder says
  const WorkFolder folder(*options.work);
  const Plan plan = load_plan(folder);
  const FolderLock lock(folder);
  remove_unfinished_output(folder);
  plan.apply_options();
  const bool with_contexts = settings::context_tracing_on();
  NGram::init();
  check_counted(folder, plan);
  _forget_writing();
  _apply(options.words);
  if (settings::output_file == nullptr) throw usage_error("expected an output datafile, -o FILE, found none");
  if (settings::context_tracing_on() && !with_contexts)
    throw usage_error(fmt::format("-c: the folder {} holds no contexts", folder.path()));
  if (!check_settings(error)) throw Ended();
  warn_of_missing_filter(error);
  warn_of_thresholds_for_pairs(error);
  std::vector<std::string> paths;
  for (const Datafile& datafile : plan.datafiles)
    paths.push_back(datafile.path);
  check_output_paths(paths);
  _check_outputs();
  const WorkBar bar({"write"}, settings::n, !options.quiet && !_writes_to_terminal());
  write_files(folder, plan, _writing(options));
}

void _print_steps() {
  std::string names;
  for (const std::string_view name : step_names)
    names += fmt::format("{}\n", name);
  write_to_standard_output(names);
}

void _do(const Options& options, const Notifier& error) {
  if (options.command == "steps") return _print_steps();
  if (options.command != "run" && !options.work)
    throw usage_error("expected the folder of intermediate files, --work DIR, found none");
  if (options.command == "run") return _run(options, error);
  if (options.command == "plan") return _plan(options, error, [](const UsedFolder&, const Plan&) {});
  if (options.command == "write") {
    try {
      return _write(options, error);
    } catch (const damaged_file& damaged) {
      throw input_error(fmt::format("{}: ngrex-scale run makes it again", damaged.what()));
    }
  }
  if (!options.words.empty())
    throw usage_error(
        fmt::format("{} takes no {}: what is to be done is in the folder", options.command, options.words[0]));
  const WorkFolder folder(*options.work);
  if (options.command == "drop") return drop_spent(folder);
  try {
    do_step(folder, options.command, options.task, options.of,
            options.keep_going ? OnFailure::keep_going : OnFailure::stop);
  } catch (const damaged_file& damaged) {
    const std::string task = folder.maker(damaged.path());
    const std::string done = folder.file(task, "done");
    if (task.empty() || damaged.path() == done) throw;
    throw input_error(
        fmt::format("{}: remove {}, and the step {} makes it again", damaged.what(), done, step_of_task(task)));
  }
}

// Says a failure as it is said when it is the only one.
void _tell(const std::exception_ptr& failure, const Notifier& error) {
  try {
    std::rethrow_exception(failure);
  } catch (const fatal_error& fatal) {
    error.fatal_error(fatal.what());
  } catch (const std::exception& other) {
    std::cerr << program.name << ": " << other.what() << std::endl;
  }
}

}  // namespace

int scale(const std::vector<std::string>& arguments) {
  const std::optional<Options> options = read_options(arguments);
  if (!options) return EXIT_SUCCESS;
  // A file that may not grow any more is a failure like a full disk: it is told, and nothing unfinished stays.
  std::signal(SIGXFSZ, SIG_IGN);
  // Where the surroundings ignore it, nobody could learn how a process has ended.
  std::signal(SIGCHLD, SIG_DFL);
  const Notifier error(std::cerr);
  try {
    _do(*options, error);
    return EXIT_SUCCESS;
  } catch (const Ended&) {
    return EXIT_FAILURE;
  } catch (const several_failures& failures) {
    for (const std::exception_ptr& failure : failures.all())
      _tell(failure, error);
    return EXIT_FAILURE;
  } catch (const fatal_error& failure) {
    error.fatal_error(failure.what());
    return EXIT_FAILURE;
  }
}

}  // namespace colx::scale
