// The walk over a datafile: what is read and counted, and where the progress bar ends it.

#include "extraction/extractor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>

#include "base/config.h"
#include "base/notifier.h"
#include "tests/support/own_stores.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"
#include "tests/support/stream_capture.h"

namespace colx {
namespace {

// Input that can be positioned a number of times and then no more.
class BalkyBuffer : public std::stringbuf {
 public:
  BalkyBuffer(const std::string& text, int positionings) : std::stringbuf(text, std::ios::in), _left(positionings) {}

 protected:
  pos_type seekoff(off_type offset, std::ios::seekdir direction, std::ios::openmode which) override {
    return _left-- > 0 ? std::stringbuf::seekoff(offset, direction, which) : pos_type(off_type(-1));
  }
  pos_type seekpos(pos_type position, std::ios::openmode which) override {
    return _left-- > 0 ? std::stringbuf::seekpos(position, which) : pos_type(off_type(-1));
  }

 private:
  int _left;
};

constexpr int never = 0;
constexpr int always = 1000;

// Input that hands out all of its bytes but the last hundred at once and breaks when it is asked for more.
class BreakingBuffer : public std::stringbuf {
 public:
  explicit BreakingBuffer(const std::string& text) : std::stringbuf(text, std::ios::in), _whole(text.size() - 100) {}

 protected:
  std::streamsize xsgetn(char* out, std::streamsize count) override {
    if (_read) throw std::runtime_error("broken");
    _read = true;
    return std::stringbuf::xsgetn(out, std::min(count, static_cast<std::streamsize>(_whole)));
  }

 private:
  std::size_t _whole;
  bool _read = false;
};

class ExtractorTest : public ::testing::Test {
 protected:
  std::uint32_t run(const std::string& text, int positionings = always) {
    BalkyBuffer buffer(text, positionings);
    return run(buffer);
  }

  std::uint32_t run(std::streambuf& buffer) {
    std::istream stream(&buffer);
    std::ostringstream out;
    std::ostringstream err;
    const Notifier error_channel(err);
    const Notifier progress_channel(out);
    const std::uint32_t length = extract(stream, stats, _stores.all(), {error_channel, progress_channel});
    has_failed = stream.fail();
    progress = out.str();
    errors = err.str();
    return length;
  }

  long stars() const { return std::count(progress.begin(), progress.end(), '*'); }

  NamedDataFileStats stats;
  bool has_failed = false;
  std::string progress;
  std::string errors;
  test::SettingsGuard _guard{2};
  test::OwnStores _stores;
};

const std::string sentence = "1 w a A 2 Sb\n2 w b B 0 Pred\n\n";
const std::string last_sentence = "1 w a A 2 Sb\n2 w b B 0 Pred\n";  // the end of the input ends it

TEST_F(ExtractorTest, ADatafileWithoutASentenceReturnsZeroAtOnce) {
  for (const char* const text : {"", "\n\n\n", "1 w a A x Sb\n\n"}) {
    EXPECT_EQ(run(text), 0U) << text;
    EXPECT_EQ(stars(), 0) << text;
  }
  EXPECT_EQ(stats.words_count, 0U);
  EXPECT_EQ(stats.sentences_count, 0U);
  EXPECT_EQ(stats.extracted_count, 0U);
  EXPECT_TRUE(test::records_of(_stores.ngrams, 3).empty());
}

TEST_F(ExtractorTest, CountsEverySentenceAndReturnsTheLength) {
  EXPECT_EQ(run(sentence + sentence + last_sentence), 3 * last_sentence.size() + 2);
  EXPECT_EQ(stats.words_count, 6U);
  EXPECT_EQ(stats.sentences_count, 3U);
  EXPECT_EQ(stats.extracted_count, 3U);
  EXPECT_EQ(stats.passed_count, 3U);
  EXPECT_EQ(stars(), 51);
  EXPECT_EQ(errors, "");
  EXPECT_FALSE(has_failed);
  EXPECT_EQ(test::frequency_of(_stores.ngrams, *test::records_of(_stores.ngrams, 3).at(0)), 3U);
}

TEST_F(ExtractorTest, AddsToStatisticsAndStores) {
  run(sentence);
  run(sentence);
  EXPECT_EQ(stats.words_count, 4U);
  EXPECT_EQ(stats.extracted_count, 2U);
  EXPECT_EQ(test::frequency_of(_stores.ngrams, *test::records_of(_stores.ngrams, 3).at(0)), 2U);
}

TEST_F(ExtractorTest, UnderTheBarTheEndOfTheInputEndsTheWalkWithSentencesReadAhead) {
  settings::context_window = {ContextWindow::sentences, 2};
  run(sentence + sentence + last_sentence);
  EXPECT_EQ(stats.extracted_count, 1U);
  EXPECT_EQ(stats.words_count, 6U);
  EXPECT_EQ(stats.sentences_count, 3U);
  EXPECT_EQ(stars(), 51);
}

TEST_F(ExtractorTest, WithoutABarEverySentenceIsExtracted) {
  settings::context_window = {ContextWindow::sentences, 2};
  EXPECT_EQ(run(sentence + sentence + last_sentence, never), 0U);
  EXPECT_FALSE(has_failed);
  EXPECT_EQ(stats.extracted_count, 3U);
  EXPECT_EQ(stats.words_count, 6U);
  EXPECT_EQ(progress, test::bar_scale);
  EXPECT_EQ(errors, "WARNING: Progress bar initialization failed! Going on without progress bar display...\n");
}

TEST_F(ExtractorTest, AStreamThatDoesNotComeBackFromItsEndHasFailed) {
  constexpr int to_the_end_and_its_position = 2;
  run(sentence, to_the_end_and_its_position);
  EXPECT_TRUE(has_failed);
  EXPECT_EQ(stats.extracted_count, 0U);
}

TEST_F(ExtractorTest, ABarThatCannotBeUpdatedIsGivenUpAndTheWalkGoesOn) {
  settings::context_window = {ContextWindow::sentences, 2};
  std::string text;
  for (int i = 0; i < 1000; ++i)
    text += sentence;
  BreakingBuffer buffer(text);
  run(buffer);
  EXPECT_TRUE(has_failed);
  // What was read before the input broke is extracted, the sentences in the window included.
  EXPECT_GT(stats.sentences_count, 500U);
  EXPECT_LT(stats.sentences_count, 1000U);
  EXPECT_GE(stats.extracted_count, stats.sentences_count - 1);
  EXPECT_TRUE(progress.ends_with("*\n")) << progress;
  EXPECT_NE(progress, test::complete_bar);
  // The line in which it broke is malformed, then there is no position any more.
  EXPECT_TRUE(errors.starts_with("WARNING: Incorrect input format detected at line ")) << errors;
  EXPECT_TRUE(errors.ends_with("\nWARNING: Progress bar update failed! Stopping progress bar display...\n")) << errors;
}

TEST_F(ExtractorTest, ASentenceThatIsDroppedDoesNotStopTheWalk) {
  run("1 w a A 2 Sb\n3 w b B 0 Pred\n\n" + last_sentence);
  EXPECT_EQ(stats.sentences_count, 1U);
  EXPECT_EQ(stats.extracted_count, 1U);
  EXPECT_NE(errors.find("Word order mismatch detected at line 2."), std::string::npos) << errors;
}

TEST_F(ExtractorTest, ParentsOutsideTheSentenceAndCyclesExtractNothing) {
  run("1 w a A 9 Sb\n2 w b B 70000 Pred\n\n1 w a A 2 Sb\n2 w b B 1 Pred\n\n1 w a A 1 Sb\n2 w b B 1 Pred\n");
  EXPECT_EQ(stats.sentences_count, 3U);
  EXPECT_EQ(stats.extracted_count, 0U);
  EXPECT_EQ(errors, "");
}

TEST_F(ExtractorTest, ParentsAreReducedTo16Bits) {
  run("1 w a A 65538 Sb\n2 w b B 65536 Pred\n");  // 2 and 0
  EXPECT_EQ(stats.extracted_count, 1U);
}

TEST_F(ExtractorTest, AChainOfTheLongestSentenceIsExtracted) {
  std::string text;
  for (int order = 1; order <= 65535; ++order)
    text += std::to_string(order) + " w a A " + std::to_string(order - 1) + " Atr\n";
  run(text);
  EXPECT_EQ(stats.words_count, 65535U);
  EXPECT_EQ(stats.extracted_count, 65534U);
  EXPECT_EQ(errors, "");
}

}  // namespace
}  // namespace colx
