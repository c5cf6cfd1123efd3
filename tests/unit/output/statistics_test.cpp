// The two statistics files.

#include "output/statistics.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/own_stores.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

class StatisticsTest : public ::testing::Test {
 protected:
  std::string stats() {
    std::ostringstream out;
    write_stats(out, datafiles, _stores.morphologic_filter.is_on(), sizes_of(_stores.texts(), _stores.ngrams));
    return out.str();
  }
  std::string filter_stats() {
    std::ostringstream out;
    write_morphologic_filter_stats(out, _stores.morphologic_filter, by_datafile);
    return out.str();
  }

  test::SettingsGuard _guard{2};
  test::OwnStores _stores;
  std::vector<NamedDataFileStats> datafiles;
  std::map<std::string, Filter::Stats> by_datafile;
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
  datafiles.push_back({10, 2, 8, 8, 0, "a"});
  EXPECT_EQ(stats(),
            "Statistics for datafile a:\n# of words: 10\n# of sentences: 2\n# of 2-grams extracted: 8\n\n"
            "Overall datafiles statistics:\n# of words: 10\n# of sentences: 2\n# of 2-grams extracted: 8\n\n" +
                empty_stores);
}

TEST_F(StatisticsTest, SumsWrapAt32Bits) {
  datafiles.push_back({4294967295U, 1, 4000000000U, 0, 0, "b"});
  datafiles.push_back({6, 2, 1000000000U, 0, 0, "a"});
  const std::string text = stats();
  EXPECT_LT(text.find("datafile b:"), text.find("datafile a:"));  // in processing order
  // 4294967295 + 6 - 2^32 = 5; 5000000000 - 4294967296 = 705032704.
  EXPECT_NE(text.find("Overall datafiles statistics:\n# of words: 5\n# of sentences: 3\n"
                      "# of 2-grams extracted: 705032704\n\n"),
            std::string::npos)
      << text;
}

TEST_F(StatisticsTest, SumsOf64BitsDoNotWrap) {
  const std::vector<NamedDataFileStatsOf<std::uint64_t>> exact = {{4294967295U, 1, 4000000000U, 0, 0, "b"},
                                                                  {6, 2, 1000000000U, 0, 0, "a"}};
  std::ostringstream out;
  write_stats(out, exact, false, sizes_of(_stores.texts(), _stores.ngrams));
  EXPECT_NE(out.str().find("Overall datafiles statistics:\n# of words: 4294967301\n# of sentences: 3\n"
                           "# of 2-grams extracted: 5000000000\n\n"),
            std::string::npos)
      << out.str();
}

TEST_F(StatisticsTest, CountsOfRulesMayBeBeyond32Bits) {
  std::ostringstream out;
  write_rule_counts(out, {{"A", "B"}}, {5000000000U}, {{"a", {5000000000U}}});
  EXPECT_EQ(out.str(),
            "Passed 2-grams statistics for datafile a:\n A B\t5000000000\n\n"
            "Overall passed 2-grams statistics:\n A B\t5000000000\n\n");
}

TEST_F(StatisticsTest, AnActiveFilterShowsWhatPassedAndWhatDidNot) {
  datafiles.push_back({10, 2, 8, 5, 3, "a"});
  datafiles.push_back({1, 1, 2, 0, 2, "b"});
  _stores.morphologic_filter.add_rule({"A", "B"});
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
    _stores.lemmas.store(lemma);
  _stores.tags.store("");
  test::count_all_types(_stores.ngrams, {{0, 0, 2}, {1, 0, 0}}, 5);
  test::count_all_types(_stores.ngrams, {{1, 0, 2}, {1, 0, 0}}, 5);
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
  _stores.morphologic_filter.add_rule({"A", "B"});
  _stores.morphologic_filter.add_rule({"N-", "--"});
  _stores.morphologic_filter.stats.matched = {5, 7};
  by_datafile["b"].matched = {4, 0};
  by_datafile["a"].matched = {1, 7};
  by_datafile["a"].unmatched = 99;
  EXPECT_EQ(filter_stats(),
            "Passed 2-grams statistics for datafile a:\n A B\t1\n N- --\t7\n\n"
            "Passed 2-grams statistics for datafile b:\n A B\t4\n N- --\t0\n\n"
            "Overall passed 2-grams statistics:\n A B\t5\n N- --\t7\n\n");
}

}  // namespace
}  // namespace colx
