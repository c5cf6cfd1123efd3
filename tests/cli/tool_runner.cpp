#include "tool_runner.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

#include "harness.h"

namespace colx::cli {

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::string _tool_path(const std::string& program) {
  const char* from_environment = std::getenv("NGREX_PROGRAM");
  const std::filesystem::path main_program = from_environment != nullptr ? from_environment : NGREX_PROGRAM_PATH;
  // The program is started from another directory, so a relative path has to be resolved here.
  return (std::filesystem::absolute(main_program).parent_path() / program).string();
}

File _temporary_file() {
  File file(std::tmpfile());
  if (!file) fail_call("tmpfile");
  return file;
}

std::string _content(const File& file) {
  std::string text;
  std::rewind(file.get());
  std::array<char, 65536> chunk{};
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), file.get()))
    text.append(chunk.data(), count);
  return text;
}

// The end to write to of a pipe that nobody reads.
int _unread_pipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) fail_call("pipe2");
  close(ends[0]);
  return ends[1];
}

void _send(int descriptor, const std::string& text) {
  std::size_t sent = 0;
  while (sent < text.size()) {
    const ssize_t count = write(descriptor, text.data() + sent, text.size() - sent);
    if (count < 0 && errno != EINTR) break;  // the program does not want to read it all
    if (count > 0) sent += static_cast<std::size_t>(count);
  }
  close(descriptor);
}

}  // namespace

ToolResult run_tool(const std::string& program, const std::vector<std::string>& arguments, const std::string& input,
                    const ToolOptions& options) {
  std::string path = _tool_path(program);
  std::vector<std::string> copies = arguments;
  std::vector<char*> words{path.data()};
  for (std::string& copy : copies)
    words.push_back(copy.data());
  words.push_back(nullptr);
  std::vector<std::string> settings = options.settings;

  const File out = _temporary_file();
  const File err = _temporary_file();
  std::array<int, 2> in{};
  if (pipe2(in.data(), O_CLOEXEC) != 0) fail_call("pipe2");
  int out_descriptor = dup(fileno(out.get()));
  int err_descriptor = dup(fileno(err.get()));
  if (options.errors_closed_pipe) {
    close(err_descriptor);
    err_descriptor = _unread_pipe();
  }
  if (options.output_closed_pipe) {
    close(out_descriptor);
    out_descriptor = _unread_pipe();
  } else if (!options.output_path.empty()) {
    close(out_descriptor);
    const int mode = options.append_output ? O_APPEND : O_TRUNC;
    out_descriptor = open(options.output_path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | mode, 0666);
  }
  if (out_descriptor < 0 || err_descriptor < 0) fail_call("standard output and standard error");

  // A child that ends without reading its input must not end the tests.
  auto* const old_handler = std::signal(SIGPIPE, SIG_IGN);
  const pid_t child = fork();
  if (child < 0) fail_call("fork");
  if (child == 0) {
    std::signal(SIGPIPE, options.ignore_sigpipe ? SIG_IGN : SIG_DFL);
    alarm(seconds_until_alarm);
    for (std::string& setting : settings)
      putenv(setting.data());
    if (!options.working_directory.empty() && chdir(options.working_directory.c_str()) != 0) _exit(126);
    if (dup2(in[0], STDIN_FILENO) < 0 || dup2(out_descriptor, STDOUT_FILENO) < 0 ||
        dup2(err_descriptor, STDERR_FILENO) < 0) {
      _exit(126);
    }
    execv(words.front(), words.data());
    _exit(127);
  }
  close(in[0]);
  close(out_descriptor);
  close(err_descriptor);
  std::thread sender(_send, in[1], std::cref(input));
  int wait_status = 0;
  while (waitpid(child, &wait_status, 0) < 0) {
    if (errno != EINTR) break;
  }
  sender.join();
  std::signal(SIGPIPE, old_handler);

  ToolResult result;
  result.out = _content(out);
  result.err = _content(err);
  result.status = WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : 128 + WTERMSIG(wait_status);
  return result;
}

}  // namespace colx::cli
