// The two statistics files.

#include "output/statistics.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

#include "corpus/persistent.h"
#include "tests/support/fresh_stores.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

class StatisticsTest : public ::testing::Test {
 protected:
  static std::string stats() {
    std::ostringstream out;
    write_stats(out);
    return out.str();
  }
  static std::string filter_stats() {
    std::ostringstream out;
    write_morphologic_filter_stats(out);
    return out.str();
  }

 private:
  test::SettingsGuard _guard{2};
  test::FreshStores _stores;
};

const std::string empty_stores =
    "Strings storage statistics:\n# of unique lemmas: 0\n# of unique tags: 0\n\n"
    "2-grams storage statistics:\n"
    "# of unique 2-grams of type 0: 1\n"
    "# of unique 2-grams of type 1: 0\n"
    "# of unique 2-grams of type 2: 0\n"
    "# of unique 2-grams of type 3: 0\n\n";

TEST_F(StatisticsTest, WithoutDatafilesTheSumsAreZero) {
  EXPECT_EQ(stats(), "Overall datafiles statistics:\n# of words: 0\n# of sentences: 0\n# of 2-grams extracted: 0\n\n" +
                         empty_stores);
}

TEST_F(StatisticsTest, ADatafileAndTheSums) {
  persistent::overall_stats.push_back({10, 2, 8, 8, 0, "a"});
  EXPECT_EQ(stats(),
            "Statistics for datafile a:\n# of words: 10\n# of sentences: 2\n# of 2-grams extracted: 8\n\n"
            "Overall datafiles statistics:\n# of words: 10\n# of sentences: 2\n# of 2-grams extracted: 8\n\n" +
                empty_stores);
}

TEST_F(StatisticsTest, SumsWrapAt32Bits) {
  persistent::overall_stats.push_back({4294967295U, 1, 4000000000U, 0, 0, "b"});
  persistent::overall_stats.push_back({6, 2, 1000000000U, 0, 0, "a"});
  const std::string text = stats();
  EXPECT_LT(text.find("datafile b:"), text.find("datafile a:"));  // in processing order
  // 4294967295 + 6 - 2^32 = 5; 5000000000 - 4294967296 = 705032704.
  EXPECT_NE(text.find("Overall datafiles statistics:\n# of words: 5\n# of sentences: 3\n"
                      "# of 2-grams extracted: 705032704\n\n"),
            std::string::npos)
      << text;
}

TEST_F(StatisticsTest, AnActiveFilterShowsWhatPassedAndWhatDidNot) {
  persistent::overall_stats.push_back({10, 2, 8, 5, 3, "a"});
  persistent::overall_stats.push_back({1, 1, 2, 0, 2, "b"});
  persistent::morphologic_filter.add_rule({"A", "B"});
  EXPECT_EQ(stats(),
            "Statistics for datafile a:\n# of words: 10\n# of sentences: 2\n# of 2-grams extracted: 8\n"
            "# of 2-grams passed: 5\n# of 2-grams filtered: 3\n\n"
            "Statistics for datafile b:\n# of words: 1\n# of sentences: 1\n# of 2-grams extracted: 2\n"
            "# of 2-grams passed: 0\n# of 2-grams filtered: 2\n\n"
            "Overall datafiles statistics:\n# of words: 11\n# of sentences: 3\n# of 2-grams extracted: 10\n"
            "# of 2-grams passed: 5\n# of 2-grams filtered: 5\n\n" +
                empty_stores);
}

TEST_F(StatisticsTest, TheStoresAreCountedByDistinctEntries) {
  for (const char* const lemma : {"heavy", "rain", "heavy"})
    persistent::lemmas.store(lemma);
  persistent::tags.store("");
  test::count_all_types(persistent::ngrams, {{0, 0, 2}, {1, 0, 0}}, 5);
  test::count_all_types(persistent::ngrams, {{1, 0, 2}, {1, 0, 0}}, 5);
  const std::string text = stats();
  EXPECT_TRUE(
      text.ends_with("Strings storage statistics:\n# of unique lemmas: 2\n# of unique tags: 1\n\n"
                     "2-grams storage statistics:\n"
                     "# of unique 2-grams of type 0: 1\n"
                     "# of unique 2-grams of type 1: 1\n"
                     "# of unique 2-grams of type 2: 2\n"
                     "# of unique 2-grams of type 3: 2\n\n"))
      << text;
}

TEST_F(StatisticsTest, WithoutRulesTheFilterFileHoldsItsTitleAlone) {
  EXPECT_EQ(filter_stats(), "Overall passed 2-grams statistics:\n\n");
}

TEST_F(StatisticsTest, RulesAreListedWithTheirCountsForEveryDatafileByPath) {
  persistent::morphologic_filter.add_rule({"A", "B"});
  persistent::morphologic_filter.add_rule({"N-", "--"});
  persistent::morphologic_filter.stats.matched = {5, 7};
  persistent::morphologic_filter_file_stats["b"].matched = {4, 0};
  persistent::morphologic_filter_file_stats["a"].matched = {1, 7};
  persistent::morphologic_filter_file_stats["a"].unmatched = 99;
  EXPECT_EQ(filter_stats(),
            "Passed 2-grams statistics for datafile a:\n A B\t1\n N- --\t7\n\n"
            "Passed 2-grams statistics for datafile b:\n A B\t4\n N- --\t0\n\n"
            "Overall passed 2-grams statistics:\n A B\t5\n N- --\t7\n\n");
}

}  // namespace
}  // namespace colx
