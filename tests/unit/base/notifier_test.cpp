#include "base/notifier.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <ctime>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

#include "tests/support/stream_capture.h"

namespace {

// What the processor clock shows. It stands still at 0 from before the program's own timer is built, so that the times
// that the program reports are those that a test has set.
constinit std::clock_t clock_ticks = 0;

// Sets the clock for one test, in millionths of a second.
class ClockAt {
 public:
  explicit ClockAt(std::clock_t ticks) { clock_ticks = ticks; }
  ~ClockAt() { clock_ticks = 0; }
  ClockAt(const ClockAt&) = delete;
  ClockAt& operator=(const ClockAt&) = delete;
};

}  // namespace

// Takes the place of the C library's function of this name in the whole test program.
extern "C" std::clock_t clock() noexcept {
  return clock_ticks;
}

namespace colx {
namespace {

TEST(Notifier, WritesEachMessageAsAWholeLineWithItsMark) {
  std::ostringstream stream;
  const Notifier notifier(stream);
  notifier.fatal_error("Broken!");
  notifier.warning("Odd...");
  notifier.info("Plain.");
  notifier.info("");
  EXPECT_EQ(stream.str(), "FATAL ERROR: Broken!\nWARNING: Odd...\nPlain.\n\n");
}

// Counts how often it is flushed.
class CountingBuffer : public std::stringbuf {
 public:
  int flushes = 0;

 protected:
  int sync() override {
    ++flushes;
    return 0;
  }
};

TEST(Notifier, FlushesAfterEveryMessage) {
  CountingBuffer buffer;
  std::ostream stream(&buffer);
  const ProgressNotifier notifier(stream);
  notifier.fatal_error("a");
  EXPECT_EQ(buffer.flushes, 1);
  notifier.warning("b");
  EXPECT_EQ(buffer.flushes, 2);
  notifier.info("c");
  EXPECT_EQ(buffer.flushes, 3);
  notifier.elapsed("d");
  EXPECT_EQ(buffer.flushes, 4);
}

TEST(Notifier, SurvivesAStreamThatHasFailed) {
  std::ostringstream stream;
  stream.setstate(std::ios::badbit);
  const Notifier notifier(stream);
  EXPECT_NO_THROW(notifier.warning("nobody listens"));
  EXPECT_EQ(stream.str(), "");
}

TEST(Notifier, SendsErrorsToStandardErrorAndProgressToStandardOutput) {
  const test::StreamCapture err(std::cerr);
  const test::StreamCapture out(std::cout);
  notifier::error.warning("to the error channel");
  notifier::progress.info("to the progress channel");
  EXPECT_EQ(err.text(), "WARNING: to the error channel\n");
  EXPECT_EQ(out.text(), "to the progress channel\n");
}

std::string _elapsed_at(std::clock_t ticks) {
  const ClockAt now(ticks);
  const test::StreamCapture out(std::cout);
  notifier::progress.elapsed("Finished.");
  return out.text();
}

TEST(ProgressNotifier, WritesTheProcessorSecondsBelowTheMessage) {
  EXPECT_EQ(_elapsed_at(420000), "Finished.\n0.42 secs elapsed.\n");
  EXPECT_EQ(_elapsed_at(0), "Finished.\n0 secs elapsed.\n");
  EXPECT_EQ(_elapsed_at(3000000), "Finished.\n3 secs elapsed.\n");
}

TEST(ProgressNotifier, WritesSixSignificantDigits) {
  EXPECT_EQ(_elapsed_at(12345678), "Finished.\n12.3457 secs elapsed.\n");
  EXPECT_EQ(_elapsed_at(100), "Finished.\n0.0001 secs elapsed.\n");
}

TEST(ProgressNotifier, WritesTimesBelowATenThousandthInScientificForm) {
  EXPECT_EQ(_elapsed_at(10), "Finished.\n1e-05 secs elapsed.\n");
  EXPECT_EQ(_elapsed_at(99), "Finished.\n9.9e-05 secs elapsed.\n");
}

// Ends the process through exit_failure as any code may, with what it says on standard output sent to standard error,
// which is what the test sees.
void _fail_visibly() {
  clock_ticks = 1234567;
  std::cout.flush();
  dup2(STDERR_FILENO, STDOUT_FILENO);
  exit_failure();
}

TEST(ExitFailureDeathTest, SaysSoOnStandardOutputReportsTheTimeAndEndsWithStatusOne) {
  EXPECT_EXIT(_fail_visibly(), ::testing::ExitedWithCode(1),
              ::testing::Eq("\nProgram terminated due to fatal error(s). See stderr output for more info.\n"
                            "1.23 s\n\n"));
}

TEST(ExitFailureDeathTest, WritesNothingOnStandardErrorItself) {
  EXPECT_EXIT(exit_failure(), ::testing::ExitedWithCode(1), ::testing::Eq(""));
}

}  // namespace
}  // namespace colx
