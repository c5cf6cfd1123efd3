// Support for the tests that see the program from outside: a temporary directory for every test, a way to run the
// program in it and to catch everything it shows, and the pieces of which the expected screens are put together.
// Nothing here knows the program's code; the texts are spelled out a second time on purpose.
#ifndef COLX_TESTS_CLI_HARNESS_H
#define COLX_TESTS_CLI_HARNESS_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace colx::cli {

using Arguments = std::vector<std::string>;

// Surroundings of one run of the program.
struct RunOptions {
  std::string working_directory;       // empty: the directory of the test process
  std::optional<std::string> input;    // bytes for a pipe on standard input; none: /dev/null
  std::string input_waits_for;         // the input is sent only after standard output has shown this text
  std::function<void()> before_input;  // called once, just before the first byte of the input is sent
  std::uint64_t address_space = 0;     // limit of the address space in bytes; 0: no limit
};

// What one run left behind. Either `status` tells how it exited or, when a signal ended it, `signal` is not 0.
struct RunResult {
  std::string out;
  std::string err;
  int status = -1;
  int signal = 0;
};

// Runs the program to its end. A run that hangs is ended by an alarm signal after some minutes.
RunResult run_program(const Arguments& arguments, const RunOptions& options = {});

// Seconds after which a program that hangs is ended by an alarm signal.
constexpr unsigned int seconds_until_alarm = 300;

// Throws std::system_error for the call named `what`, which has just failed.
[[noreturn]] void fail_call(const char* what);

// Replaces the figures of the time lines, which differ from run to run: "0.42 secs elapsed." becomes "T secs elapsed.",
// "0.42 s" becomes "T s". Only whole lines are replaced.
std::string normalise_times(std::string_view text);

// The whole content of a file; fails the running test when the file cannot be read.
std::string read_file(const std::string& path);

// Fixture with a fresh temporary directory, removed afterwards. The program runs inside it, so that expected texts can
// name files by their short names.
class CliTest : public ::testing::Test {
 protected:
  CliTest();
  ~CliTest() override;

  std::string path(const std::string& name) const;
  void write(const std::string& name, std::string_view content) const;
  std::string read(const std::string& name) const;
  bool exists(const std::string& name) const;

  // Writes `corpus` to "corpus.dat" and a "list" that names only it.
  void write_corpus(std::string_view corpus) const;

  // Runs the program in the temporary directory; the times in `out` are normalised.
  RunResult run(const Arguments& arguments, RunOptions options = {}) const;

  // Like `run`, with "-i list -n `n` -o output" in front of the arguments.
  RunResult run_job(const std::string& n, const Arguments& arguments, const RunOptions& options = {}) const;

  // Like `run_job`, and fails the test unless the run says goodbye, with status 0 and nothing on standard error.
  RunResult run_clean(const std::string& n, const Arguments& arguments = {}) const;

 private:
  std::string _directory;
};

// One pair of words; 14 + 16 + 1 bytes.
inline const std::string pair_corpus =
    "1 a a AB 2 Sb\n"
    "2 b b AB 0 Pred\n"
    "\n";

// Expected texts on standard output, times normalised.
std::string usage_screen();
std::string startup_screen();                       // both lines of the checks, with their time
std::string timer_screen();                         // the run timer at the very end
std::string termination_screen();                   // the farewell of a failed run, run timer included
std::string bar_scale();                            // the two lines that every progress bar begins with
std::string stars(std::size_t count);               // that many marks
std::string complete_bar();                         // scale and a bar run to its end: 51 marks and a line end
std::string phase_end(const std::string& message);  // a "Finished ..." message with its time
std::string datafile_screen(const std::string& datafile, std::size_t bytes, const std::string& bar = complete_bar());
std::string percentage_screen(const std::string& percentage);
std::string processing_screen(const std::string& datafiles);  // the frame around all datafiles
std::string output_phase(const std::string& bar = complete_bar());
std::string contexts_phase(const std::string& bar = complete_bar());
std::string statistics_phase();
std::string filter_statistics_phase();
std::string farewell_screen();  // "Bye!" and the run timer

// Whole standard output of a run over one regular datafile with nothing but -o: `bytes` is the datafile's length.
std::string plain_run_screen(const std::string& datafile, std::size_t bytes);

// What standard error shows for one fatal error or one warning.
std::string fatal(const std::string& message);
std::string warning(const std::string& message);

// How this machine prints a quotient of two zeros; the sign differs between processors.
std::string not_a_number();

}  // namespace colx::cli

#endif
