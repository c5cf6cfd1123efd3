#include "base/progress_bar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
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
  const test::StreamCapture out(std::cout);
  const ProgressBar bar(1000);
  EXPECT_EQ(out.text(), test::bar_scale);
}

TEST(ProgressBar, DrawsAMarkForEveryFiftiethReached) {
  const test::StreamCapture out(std::cout);
  ProgressBar bar(100);
  bar.advance(20);
  EXPECT_EQ(out.text(), test::bar_scale + _marks(10));
  bar.advance(30);
  EXPECT_EQ(out.text(), test::bar_scale + _marks(25));
}

TEST(ProgressBar, EndsWithFiftyOneMarksAndALineEndWhenTheCountIsReached) {
  const test::StreamCapture out(std::cout);
  ProgressBar bar(7);
  for (int i = 0; i < 7; ++i)
    bar.advance(1);
  EXPECT_EQ(out.text(), test::complete_bar);
}

TEST(ProgressBar, StaysUnfinishedWhenTheCountIsNotReached) {
  const test::StreamCapture out(std::cout);
  {
    ProgressBar bar(1000);
    bar.advance(999);
  }
  const std::string text = out.text();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
}

TEST(ProgressBar, IsCompletedFromAnyCount) {
  for (const unsigned long done : {0UL, 1UL, 500UL, 999UL}) {
    const test::StreamCapture out(std::cout);
    ProgressBar bar(1000);
    if (done != 0) bar.advance(done);
    bar.complete();
    EXPECT_EQ(out.text(), test::complete_bar) << "after " << done;
  }
}

TEST(ProgressBar, TakesACountOfNothingAsOne) {
  const test::StreamCapture out(std::cout);
  ProgressBar bar(0);
  EXPECT_EQ(out.text(), test::bar_scale);
  bar.complete();
  EXPECT_EQ(out.text(), test::complete_bar);
}

TEST(ProgressBar, GoesOnWhereItWasAfterAMove) {
  const test::StreamCapture out(std::cout);
  ProgressBar bar(100);
  bar.advance(50);
  ProgressBar moved(std::move(bar));
  moved.advance(50);
  EXPECT_EQ(out.text(), test::complete_bar);
}

// Increments of 0 and calls on a finished bar included: they are passed on like any other.
TEST(ProgressBar, PrintsWhatTheDisplayBelowPrintsForTheSameIncrements) {
  test::Random random;
  for (int round = 0; round < 500; ++round) {
    const unsigned long expected_count = random.below(300);
    const test::StreamCapture out(std::cout);
    ProgressBar bar(expected_count);
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
    ASSERT_EQ(out.text(), stream.str()) << "expected count " << expected_count;
  }
}

}  // namespace
}  // namespace colx
