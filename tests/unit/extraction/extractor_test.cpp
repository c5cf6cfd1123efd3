// The walk over a datafile: what is read and counted, and where the progress bar ends it.

#include "extraction/extractor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <istream>
#include <optional>
#include <sstream>
#include <string>

#include "corpus/persistent.h"
#include "run/config.h"
#include "run/notifier.h"
#include "tests/support/fresh_stores.h"
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
constexpr int only_at_the_start = 3;  // to the end, where is it, and back
constexpr int always = 1000;

class ExtractorTest : public ::testing::Test {
 protected:
  std::uint32_t run(const std::string& text, int positionings = always) {
    BalkyBuffer buffer(text, positionings);
    std::istream stream(&buffer);
    const test::StreamCapture out(notifier::progress.stream());
    const test::StreamCapture err(notifier::error.stream());
    const std::uint32_t length = extract(stream, stats);
    progress = out.text();
    errors = err.text();
    return length;
  }

  long stars() const { return std::count(progress.begin(), progress.end(), '*'); }

  NamedDataFileStats stats;
  std::string progress;
  std::string errors;

 private:
  test::SettingsGuard _guard{2};
  test::FreshStores _stores;
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
  EXPECT_TRUE(test::records_of(persistent::ngrams, 3).empty());
}

TEST_F(ExtractorTest, CountsEverySentenceAndReturnsTheLength) {
  EXPECT_EQ(run(sentence + sentence + last_sentence), 3 * last_sentence.size() + 2);
  EXPECT_EQ(stats.words_count, 6U);
  EXPECT_EQ(stats.sentences_count, 3U);
  EXPECT_EQ(stats.extracted_count, 3U);
  EXPECT_EQ(stats.passed_count, 3U);
  EXPECT_EQ(stars(), 51);
  EXPECT_EQ(errors, "");
  EXPECT_EQ(test::records_of(persistent::ngrams, 3).at(0)->frequency(), 3U);
}

TEST_F(ExtractorTest, AddsToStatisticsAndStores) {
  run(sentence);
  run(sentence);
  EXPECT_EQ(stats.words_count, 4U);
  EXPECT_EQ(stats.extracted_count, 2U);
  EXPECT_EQ(test::records_of(persistent::ngrams, 3).at(0)->frequency(), 2U);
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
  EXPECT_EQ(stats.extracted_count, 3U);
  EXPECT_EQ(stats.words_count, 6U);
  EXPECT_EQ(progress, test::bar_scale);
  EXPECT_EQ(errors, "WARNING: Progress bar initialization failed! Going on without progress bar display...\n");
}

TEST_F(ExtractorTest, ABarThatCannotBeUpdatedIsGivenUpAndTheWalkGoesOn) {
  settings::context_window = {ContextWindow::sentences, 2};
  // Four sentences: when the first is done three have been read, and the input is not at its end yet.
  const std::string text = sentence + sentence + sentence + last_sentence;
  EXPECT_EQ(run(text, only_at_the_start), text.size());
  EXPECT_EQ(stats.extracted_count, 4U);
  EXPECT_EQ(progress, test::bar_scale + "\n");
  EXPECT_EQ(errors, "WARNING: Progress bar update failed! Stopping progress bar display...\n");
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
