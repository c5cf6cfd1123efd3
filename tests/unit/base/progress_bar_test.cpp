#include "base/progress_bar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>

#include "base/boost_progress.h"
#include "tests/support/random.h"
#include "tests/support/stream_capture.h"

namespace colx {
namespace {

std::string _marks(std::size_t count) {
  return std::string(count, '*');
}

TEST(ProgressBar, DrawsOnlyItsScaleWhenItIsMade) {
  std::ostringstream out;
  const ProgressBar bar(out, 1000);
  EXPECT_EQ(out.str(), test::bar_scale);
}

TEST(ProgressBar, DrawsAMarkForEveryFiftiethReached) {
  std::ostringstream out;
  ProgressBar bar(out, 100);
  bar.advance(20);
  EXPECT_EQ(out.str(), test::bar_scale + _marks(10));
  bar.advance(30);
  EXPECT_EQ(out.str(), test::bar_scale + _marks(25));
}

TEST(ProgressBar, EndsWithFiftyOneMarksAndALineEndWhenTheCountIsReached) {
  std::ostringstream out;
  ProgressBar bar(out, 7);
  for (int i = 0; i < 7; ++i)
    bar.advance(1);
  EXPECT_EQ(out.str(), test::complete_bar);
}

TEST(ProgressBar, StaysUnfinishedWhenTheCountIsNotReached) {
  std::ostringstream out;
  {
    ProgressBar bar(out, 1000);
    bar.advance(999);
  }
  const std::string text = out.str();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
}

TEST(ProgressBar, IsCompletedFromAnyCount) {
  for (const unsigned long done : {0UL, 1UL, 500UL, 999UL}) {
    std::ostringstream out;
    ProgressBar bar(out, 1000);
    if (done != 0) bar.advance(done);
    bar.complete();
    EXPECT_EQ(out.str(), test::complete_bar) << "after " << done;
  }
}

TEST(ProgressBar, TakesACountOfNothingAsOne) {
  std::ostringstream out;
  ProgressBar bar(out, 0);
  EXPECT_EQ(out.str(), test::bar_scale);
  bar.complete();
  EXPECT_EQ(out.str(), test::complete_bar);
}

TEST(ProgressBar, GoesOnWhereItWasAfterAMove) {
  std::ostringstream out;
  ProgressBar bar(out, 100);
  bar.advance(50);
  ProgressBar moved(std::move(bar));
  moved.advance(50);
  EXPECT_EQ(out.str(), test::complete_bar);
}

// Increments of 0 and calls on a finished bar included: they are passed on like any other.
TEST(ProgressBar, PrintsWhatTheDisplayBelowPrintsForTheSameIncrements) {
  test::Random random;
  for (int round = 0; round < 500; ++round) {
    const unsigned long expected_count = random.below(300);
    std::ostringstream out;
    ProgressBar bar(out, expected_count);
    std::ostringstream stream;
    boost::progress_display display(expected_count, stream, "", "", "");
    for (std::uint32_t calls = random.below(30); calls > 0; --calls) {
      const unsigned long left = display.expected_count() - display.count();
      if (random.once_in(8)) {
        bar.complete();
        display += left;
      } else {
        const unsigned long increment = std::min<unsigned long>(left, random.below(40));
        bar.advance(increment);
        display += increment;
      }
    }
    ASSERT_EQ(out.str(), stream.str()) << "expected count " << expected_count;
  }
}

}  // namespace
}  // namespace colx
