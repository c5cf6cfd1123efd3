#include "harness.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace colx::cli {

namespace {

struct Pipe {
  int reading = -1;
  int writing = -1;
};

Pipe _make_pipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) fail_call("pipe2");
  return {ends[0], ends[1]};
}

void _close(int& descriptor) {
  if (descriptor >= 0) close(descriptor);
  descriptor = -1;
}

std::string _program_path() {
  const char* from_environment = std::getenv("NGREX_PROGRAM");
  // The program is started from another directory, so a relative path has to be resolved here.
  return std::filesystem::absolute(from_environment != nullptr ? from_environment : NGREX_PROGRAM_PATH).string();
}

// Turns the forked child into the program. Never returns.
[[noreturn]] void _become_program(const std::vector<char*>& words, const RunOptions& options, int input, int output,
                                  int error) {
  std::signal(SIGPIPE, SIG_DFL);
  alarm(seconds_until_alarm);
  if (!options.working_directory.empty() && chdir(options.working_directory.c_str()) != 0) _exit(126);
  if (options.address_space != 0) {
    const rlimit limit{options.address_space, options.address_space};
    if (setrlimit(RLIMIT_AS, &limit) != 0) _exit(126);
  }
  if (dup2(input, STDIN_FILENO) < 0 || dup2(output, STDOUT_FILENO) < 0 || dup2(error, STDERR_FILENO) < 0) _exit(126);
  execv(words.front(), words.data());
  _exit(127);
}

// Appends what can be read now; closes the descriptor at its end.
void _drain(int& descriptor, std::string& text) {
  std::array<char, 65536> chunk{};
  const ssize_t count = read(descriptor, chunk.data(), chunk.size());
  if (count > 0) {
    text.append(chunk.data(), static_cast<std::size_t>(count));
  } else if (count == 0 || errno != EINTR) {
    _close(descriptor);
  }
}

// Moves bytes between this process and the child until the child has closed both of its outputs.
void _exchange(const RunOptions& options, int& to_child, int& out, int& err, RunResult& result) {
  std::size_t sent = 0;
  bool input_open = false;
  while (out >= 0 || err >= 0) {
    if (to_child >= 0 && !input_open && result.out.find(options.input_waits_for) != std::string::npos) {
      input_open = true;
      if (options.before_input) options.before_input();
    }
    // poll() passes over negative descriptors.
    std::array<pollfd, 3> waits{{{out, POLLIN, 0}, {err, POLLIN, 0}, {input_open ? to_child : -1, POLLOUT, 0}}};
    if (poll(waits.data(), waits.size(), -1) < 0) {
      if (errno == EINTR) continue;
      fail_call("poll");
    }
    if (waits[0].revents != 0) _drain(out, result.out);
    if (waits[1].revents != 0) _drain(err, result.err);
    if (waits[2].revents != 0) {
      const ssize_t count = ::write(to_child, options.input->data() + sent, options.input->size() - sent);
      if (count > 0) sent += static_cast<std::size_t>(count);
      if (sent == options.input->size() || (count < 0 && errno != EAGAIN && errno != EINTR)) _close(to_child);
    }
  }
}

bool _is_time_line(std::string_view line, std::string_view unit) {
  return line.size() > unit.size() && line.substr(line.size() - unit.size()) == unit &&
         line.substr(0, line.size() - unit.size()).find_first_not_of("0123456789.e+-") == std::string_view::npos;
}

bool _is_timer_line(std::string_view line) {
  const std::size_t dot = line.find('.');
  return dot != std::string_view::npos && line.size() == dot + 5 && _is_time_line(line, " s") &&
         line.find_first_not_of("0123456789") == dot && line.find_first_not_of("0123456789", dot + 1) == dot + 3;
}

}  // namespace

void fail_call(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

RunResult run_program(const Arguments& arguments, const RunOptions& options) {
  std::string program = _program_path();
  Arguments copies = arguments;
  std::vector<char*> words{program.data()};
  for (std::string& copy : copies)
    words.push_back(copy.data());
  words.push_back(nullptr);

  Pipe input = _make_pipe();
  Pipe output = _make_pipe();
  Pipe error = _make_pipe();
  if (!options.input) {
    _close(input.writing);
    _close(input.reading);
    input.reading = open("/dev/null", O_RDONLY | O_CLOEXEC);
  } else if (fcntl(input.writing, F_SETFL, O_NONBLOCK) != 0) {
    fail_call("fcntl");
  }

  // A child that ends without reading its input must not end the tests.
  auto* const old_handler = std::signal(SIGPIPE, SIG_IGN);
  const pid_t child = fork();
  if (child < 0) fail_call("fork");
  if (child == 0) _become_program(words, options, input.reading, output.writing, error.writing);
  _close(input.reading);
  _close(output.writing);
  _close(error.writing);

  RunResult result;
  _exchange(options, input.writing, output.reading, error.reading, result);
  _close(input.writing);
  int wait_status = 0;
  while (waitpid(child, &wait_status, 0) < 0) {
    if (errno != EINTR) fail_call("waitpid");
  }
  std::signal(SIGPIPE, old_handler);
  if (WIFEXITED(wait_status)) result.status = WEXITSTATUS(wait_status);
  if (WIFSIGNALED(wait_status)) result.signal = WTERMSIG(wait_status);
  return result;
}

std::string normalise_times(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    if (_is_time_line(line, " secs elapsed.")) {
      result += "T secs elapsed.";
    } else if (_is_timer_line(line)) {
      result += "T s";
    } else {
      result += line;
    }
    if (end < text.size()) result += '\n';
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

std::string read_file(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  EXPECT_TRUE(stream.is_open()) << path;
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

CliTest::CliTest() {
  std::string pattern = (std::filesystem::temp_directory_path() / "ngrex-cli-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) fail_call("mkdtemp");
  _directory = pattern;
}

CliTest::~CliTest() {
  std::error_code ignored;
  std::filesystem::remove_all(_directory, ignored);
}

std::string CliTest::path(const std::string& name) const {
  return _directory + "/" + name;
}

void CliTest::write(const std::string& name, std::string_view content) const {
  std::ofstream stream(path(name), std::ios::binary);
  stream << content;
  stream.close();
  if (!stream) throw std::runtime_error("cannot write " + path(name));
}

std::string CliTest::read(const std::string& name) const {
  return read_file(path(name));
}

bool CliTest::exists(const std::string& name) const {
  return std::filesystem::exists(path(name));
}

void CliTest::write_corpus(std::string_view corpus) const {
  write("corpus.dat", corpus);
  write("list", "corpus.dat\n");
}

RunResult CliTest::run(const Arguments& arguments, RunOptions options) const {
  options.working_directory = _directory;
  RunResult result = run_program(arguments, options);
  result.out = normalise_times(result.out);
  return result;
}

RunResult CliTest::run_job(const std::string& n, const Arguments& arguments, const RunOptions& options) const {
  Arguments words{"-i", "list", "-n", n, "-o", "output"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return run(words, options);
}

RunResult CliTest::run_clean(const std::string& n, const Arguments& arguments) const {
  RunResult result = run_job(n, arguments);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(result.out.ends_with(farewell_screen())) << result.out;
  return result;
}

}  // namespace colx::cli
