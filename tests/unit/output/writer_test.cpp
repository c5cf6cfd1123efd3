// The output datafile, from counted N-grams to its bytes.

#include "output/writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/config.h"
#include "base/notifier.h"
#include "tests/support/own_stores.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"
#include "tests/support/stream_capture.h"

namespace colx {
namespace {

using test::MemberSpec;

class WriterTest : public ::testing::Test {
 protected:
  void set_up(std::uint8_t n) {
    _guard.emplace(n);
    _stores.emplace();
    for (const char* const lemma : {"heavy", "rain", "strong", "wind", "blue"})
      _stores->lemmas.store(lemma);
    for (const char* const tag : {"AA", "NN"})
      _stores->tags.store(tag);
  }

  // Counts pairs of an adjective below a noun.
  void count(std::uint32_t first, std::uint32_t second, unsigned times) {
    test::count_all_types(_stores->ngrams, {{first, 0, 2, "Atr"}, {second, 1, 0, "Sb"}}, times);
  }

  // O = {930, 20, 40, 10} for heavy rain.
  void count_example() {
    count(0, 1, 10);
    count(0, 3, 40);
    count(2, 1, 20);
    count(4, 3, 930);
  }

  std::string written() {
    std::ostringstream out;
    std::ostringstream bar;
    write(out, _stores->ngrams, _stores->texts(), Notifier(bar));
    progress = bar.str();
    return out.str();
  }

  std::string progress;
  std::optional<test::SettingsGuard> _guard;
  std::optional<test::OwnStores> _stores;
};

TEST_F(WriterTest, AnEmptyStoreGivesAnEmptyLineAndABareScale) {
  set_up(2);
  EXPECT_EQ(written(), "\n");
  EXPECT_EQ(progress, test::bar_scale);
}

TEST_F(WriterTest, ABlockHoldsMembersCellsAndMeasures) {
  set_up(2);
  settings::precision = 4;
  count_example();
  // For heavy rain alone: chi-square 1080663.23, log-likelihood 5883.107, mutual information 2.737, Pearson 0.2286,
  // t test 2.701, z score 6.945.
  const std::string block =
      "1\theavy\tAA\t2\tAtr\n2\train\tNN\t0\tHead\n"
      "930\t20\t40\t10\n"
      "1.081e+06\t5883\t2.737\t0.2286\t2.701\t6.945\n\n";
  const std::string all = written();
  EXPECT_NE(all.find(block), std::string::npos) << all;
  EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 4 * 5 + 1);
  EXPECT_TRUE(all.ends_with("\n\n\n")) << all;  // the last block's empty line and one more
  EXPECT_EQ(progress, test::complete_bar);
}

TEST_F(WriterTest, RejectedNGramsWriteNothingAndCountAsSteps) {
  set_up(2);
  settings::sieves.frequency = 10;
  count_example();
  EXPECT_NE(written().find("1\theavy\tAA\t2\tAtr\n2\train"), std::string::npos);
  settings::sieves.frequency = 11;
  EXPECT_EQ(written().find("1\theavy\tAA\t2\tAtr\n2\train"), std::string::npos);
  settings::sieves.frequency = 931;
  EXPECT_EQ(written(), "\n");
  EXPECT_EQ(progress, test::complete_bar);
}

TEST_F(WriterTest, BlocksComeInTheOrderOfTheStore) {
  set_up(2);
  for (std::uint32_t first = 0; first < 5; ++first) {
    for (std::uint32_t second = 0; second < 5; ++second)
      count(first, second, 1 + first);
  }
  std::string expected;
  for (const NGram* record : test::records_of(_stores->ngrams, 3)) {
    expected += "1\t" + std::string(_stores->lemmas[record->member(0).lemma()]) + "\tAA\t2\tAtr\n";
    expected += "2\t" + std::string(_stores->lemmas[record->member(1).lemma()]) + "\tNN\t0\tHead\n";
  }
  std::istringstream lines(written());
  std::string members;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("1\t") || line.starts_with("2\t")) members += line + '\n';
  }
  // The cell and measure lines of these pairs begin with other numbers: cell 0 is 75 less some.
  EXPECT_EQ(members, expected);
}

TEST_F(WriterTest, LargerNGramsHaveTwoMeasures) {
  set_up(3);
  settings::thresholds.mutual_information = 1e300;  // of pairs only
  settings::thresholds.z_score = 1e300;
  const std::vector<MemberSpec> words = {{0, 0, 2, "Atr"}, {1, 1, 3, "Sb"}, {3, 1, 0, "Pred"}};
  test::count_all_types(_stores->ngrams, words, 2);
  // Alone in the store: only cell 7 is not empty, E[7] = 2 and E = 0 elsewhere: 0 / 0, and 2 x 2 log 1 = 0.
  const std::string all = written();
  EXPECT_TRUE(
      all.starts_with("1\theavy\tAA\t2\tAtr\n2\train\tNN\t3\tSb\n3\twind\tNN\t0\tHead\n"
                      "0\t0\t0\t0\t0\t0\t0\t2\n"))
      << all;
  EXPECT_TRUE(all.ends_with("nan\t0\n\n\n")) << all;
}

TEST_F(WriterTest, ThePrecisionIsThatOfTheSettings) {
  set_up(2);
  count_example();
  settings::precision = 2;
  EXPECT_NE(written().find("1.1e+06\t5.9e+03\t2.7\t0.23\t2.7\t6.9\n"), std::string::npos);
  settings::precision = 7;
  EXPECT_NE(written().find("1080663\t"), std::string::npos);
}

}  // namespace
}  // namespace colx
