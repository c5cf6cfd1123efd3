// A way to run the companion programs from outside, beside the harness that knows the main program only.
#ifndef COLX_TESTS_CLI_TOOL_RUNNER_H
#define COLX_TESTS_CLI_TOOL_RUNNER_H

#include <string>
#include <vector>

namespace colx::cli {

// Surroundings of one run of a companion program.
struct ToolOptions {
  std::string working_directory;      // empty: the directory of the test process
  std::string output_path;            // where standard output goes; empty: it is caught
  bool append_output = false;         // write behind what is there
  bool output_closed_pipe = false;    // standard output is a pipe that nobody reads
  bool errors_closed_pipe = false;    // so is standard error
  bool ignore_sigpipe = false;        // as behind "trap '' PIPE" in a shell
  std::vector<std::string> settings;  // NAME=VALUE, added to the environment
};

// What one run left behind. `status` is the exit status, or 128 and the signal's number when a signal ended it.
struct ToolResult {
  std::string out;
  std::string err;
  int status = -1;
};

// Runs a program to its end that lies in the directory of the main one, whose path comes from the environment variable
// NGREX_PROGRAM or from the build. `input` arrives through a pipe. Throws std::system_error when the machinery fails.
ToolResult run_tool(const std::string& program, const std::vector<std::string>& arguments,
                    const std::string& input = "", const ToolOptions& options = {});

}  // namespace colx::cli

#endif
