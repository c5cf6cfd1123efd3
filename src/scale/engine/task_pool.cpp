#include "scale/engine/task_pool.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <map>
#include <new>
#include <set>
#include <stdexcept>

#include <fmt/format.h>

#include "base/errors.h"
#include "companion/descriptor.h"
#include "companion/errors.h"
#include "scale/engine/progress.h"
#include "spill/damaged_file.h"

namespace colx::scale {

namespace {

// How a process ends, and the first letter of what it says then.
constexpr int failed = 3;
constexpr int moment = 200;  // milliseconds until a progress bar is drawn again
constexpr char damaged_letter = 'D';
constexpr char fatal_letter = 'F';
constexpr char output_letter = 'W';
constexpr char other_letter = 'O';
constexpr char path_end = '\0';  // which no path has

// What a process says of its failure goes through a pipe.
void _say(const Descriptor& pipe, char letter, const std::string& text) {
  try {
    pipe.write_fully(letter + text, "a pipe");
  } catch (const std::exception&) {
    // Then it ends without a word.
  }
}

[[noreturn]] void _be_task(const Task& task, pid_t parent, const Descriptor& pipe) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) ::_exit(failed);  // it ended before it could take us along
  try {
    task.body();
    ::_exit(EXIT_SUCCESS);
  } catch (const damaged_file& error) {
    _say(pipe, damaged_letter, error.path() + path_end + error.what());
  } catch (const fatal_error& error) {
    _say(pipe, fatal_letter, error.what());
  } catch (const output_error& error) {
    _say(pipe, output_letter, error.what());
  } catch (const std::bad_alloc&) {
    _say(pipe, fatal_letter, out_of_memory("in the task " + task.name).what());
  } catch (const std::exception& error) {
    _say(pipe, other_letter, error.what());
  }
  ::_exit(failed);
}

// The processes that are at work.
class Processes {
 public:
  Processes() = default;
  ~Processes() {
    for (const auto& [pid, process] : _running)
      ::kill(pid, SIGKILL);
    while (!_running.empty()) {
      const auto first = _running.begin();
      ::waitpid(first->first, nullptr, 0);
      _running.erase(first);
    }
  }
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;

  std::size_t size() const { return _running.size(); }

  void start(const Task& task) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw output_error(fmt::format("cannot make a pipe: {}", system_reason()));
    Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid < 0) throw output_error(fmt::format("cannot make a process: {}", system_reason()));
    if (pid == 0) _be_task(task, parent, writing);
    _running.emplace(pid, Running{task.name, std::move(reading)});
  }

  // Waits for one to end, and throws its failure.
  void wait() {
    while (Progress::is_shown() && !_is_any_over())
      Progress::draw();
    int status = 0;
    pid_t pid;
    do
      pid = ::waitpid(-1, &status, 0);
    while (pid < 0 && errno == EINTR);
    const auto found = _running.find(pid);
    if (found == _running.end()) return;
    Running process = std::move(found->second);
    _running.erase(found);
    if (WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) return;
    if (WIFSIGNALED(status))
      throw std::runtime_error(fmt::format("the task {} was ended by signal {}", process.name, WTERMSIG(status)));
    _throw_failure(process);
  }

 private:
  struct Running {
    std::string name;
    Descriptor pipe;
  };

  // Whether one ends, or fails, within a moment: nobody else has the other end of its pipe.
  bool _is_any_over() const {
    std::vector<pollfd> pipes;
    for (const auto& [pid, process] : _running)
      pipes.push_back({process.pipe.number(), POLLIN, 0});
    return ::poll(pipes.data(), pipes.size(), moment) != 0;
  }

  [[noreturn]] static void _throw_failure(const Running& process) {
    std::string text;
    char bytes[4096];
    for (std::size_t count; (count = process.pipe.read_some(bytes, sizeof bytes, "a pipe")) != 0;)
      text.append(bytes, count);
    if (text.empty()) throw std::runtime_error(fmt::format("the task {} failed", process.name));
    const std::string rest = text.substr(1);
    if (text[0] == fatal_letter) throw fatal_error(rest);
    if (text[0] == output_letter) throw output_error(rest);
    const std::size_t end = rest.find(path_end);
    if (text[0] == damaged_letter && end != std::string::npos) {
      const std::string path = rest.substr(0, end);
      const std::string usual = fmt::format("intermediate file {} ", path);
      throw damaged_file(path, rest.substr(end + 1 + usual.size()));
    }
    throw std::runtime_error(rest);
  }

  std::map<pid_t, Running> _running;
};

bool _fits(const std::optional<Manifest>& manifest, const Task& task) {
  return manifest && manifest->number("key") == task.key;
}

}  // namespace

void Failures::watch(const std::function<void()>& something) {
  if (_on_failure == OnFailure::stop) return something();
  try {
    something();
  } catch (const damaged_file&) {
    // It can be made again, and what depends on it then done.
    if (!_damaged) _damaged = std::current_exception();
  } catch (const std::exception&) {
    _all.push_back(std::current_exception());
  }
}

void Failures::tell() const {
  if (_damaged) std::rethrow_exception(_damaged);
  if (_all.size() == 1) std::rethrow_exception(_all[0]);
  if (!_all.empty()) throw several_failures(_all);
}

bool all_done(const WorkFolder& folder, const std::vector<Task>& tasks) {
  return std::all_of(tasks.begin(), tasks.end(),
                     [&](const Task& task) { return _fits(folder.verified(task.name), task); });
}

void do_tasks(const WorkFolder& folder, const std::vector<Task>& tasks, std::size_t jobs, OnFailure on_failure) {
  std::vector<const Task*> waiting;
  std::set<std::string> names;
  for (const Task& task : tasks) {
    if (_fits(folder.done(task.name), task)) continue;
    waiting.push_back(&task);
    names.insert(task.name);
  }
  Progress::keep(tasks.size() - waiting.size());
  if (waiting.empty()) return;
  folder.forget(names);
  Failures failures(on_failure);
  Processes processes;
  for (const Task* task : waiting) {
    while (processes.size() >= jobs)
      failures.watch([&] { processes.wait(); });
    failures.watch([&] {
      processes.start({task->name, task->key, [task] {
                         task->body();
                         Progress::finish();
                       }});
    });
  }
  while (processes.size() > 0)
    failures.watch([&] { processes.wait(); });
  failures.tell();
}

void do_together(const std::vector<Task>& tasks) {
  Processes processes;
  for (const Task& task : tasks)
    processes.start(task);
  while (processes.size() > 0)
    processes.wait();
}

}  // namespace colx::scale
