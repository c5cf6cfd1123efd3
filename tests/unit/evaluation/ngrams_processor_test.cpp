// The walk over counted N-grams with the frequencies of their patterns, against counting by brute force.

#include "evaluation/ngrams_processor.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::SettingsGuard;
using Frequencies = std::vector<std::uint32_t>;

// Everything that the walk over a store yields.
std::vector<std::pair<const NGram*, Frequencies>> walk(const NGramStore& store, std::uint32_t least_frequency = 0) {
  std::vector<std::pair<const NGram*, Frequencies>> yielded;
  NGramsProcessor processor(store, least_frequency);
  std::size_t gone_through = 0;
  while (processor.next()) {
    gone_through += processor.stepped();
    const auto frequencies = processor.frequencies();
    yielded.emplace_back(&processor.current(), Frequencies(frequencies.begin(), frequencies.end()));
  }
  EXPECT_EQ(gone_through + processor.stepped(), store.records(NGram::_full_ngram_type).size());
  return yielded;
}

TEST(NGramsProcessorTest, AnEmptyStoreYieldsNothing) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  EXPECT_TRUE(walk(store).empty());
}

TEST(NGramsProcessorTest, FrequenciesAreThoseOfThePatterns) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  test::count_all_types(store, {{1, 0, 2}, {2, 0, 0}}, 3);
  test::count_all_types(store, {{1, 0, 2}, {3, 0, 0}}, 4);
  test::count_all_types(store, {{4, 0, 2}, {2, 0, 0}}, 5);
  for (const auto& [record, frequencies] : walk(store)) {
    if (test::frequency_of(store, *record) != 3) continue;
    // All 12; the second word 3 + 5, the first 3 + 4, both 3.
    EXPECT_EQ(frequencies, (Frequencies{12, 8, 7, 3}));
    return;
  }
  FAIL() << "the pair that occurs three times was not yielded";
}

TEST(NGramsProcessorTest, PassesOverNGramsThatAreTooRare) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  test::count_all_types(store, {{1, 0, 2}, {2, 0, 0}}, 3);
  test::count_all_types(store, {{1, 0, 2}, {3, 0, 0}}, 4);
  test::count_all_types(store, {{4, 0, 2}, {2, 0, 0}}, 5);
  EXPECT_EQ(walk(store, 4).size(), 2U);
  EXPECT_TRUE(walk(store, 6).empty());
}

TEST(NGramsProcessorTest, FrequenciesIncludeWhatWasCarriedOut) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  const std::vector<MemberSpec> pair = {{1, 0, 2}, {2, 0, 0}};
  test::count_all_types(store, pair);
  const test::Occurrence occurrence(pair);
  store.records(1).add(occurrence.members(1), 16777216);
  // 2 + 16777215 sightings of the second word.
  EXPECT_EQ(walk(store).at(0).second, (Frequencies{1, 16777217, 1, 1}));
}

TEST(NGramsProcessorTest, NeedsNoIndexOfTheFullType) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  test::count_all_types(store, {{1, 0, 2}, {2, 0, 0}}, 3);
  store.records(3).release_index();
  EXPECT_EQ(walk(store).at(0).second, (Frequencies{3, 3, 3, 3}));
}

TEST(NGramsProcessorTest, PatternsThatWereCountedLastHaveTheSameFrequencies) {
  const SettingsGuard guard(3);
  std::mt19937 random(11);
  NGramStore with_records(2048);
  NGramStore counted_last(2048);
  counted_last.count_patterns_last();
  for (int i = 0; i < 2000; ++i) {
    std::vector<MemberSpec> words;
    for (unsigned m = 0; m < 3; ++m)
      words.push_back({static_cast<std::uint32_t>(random() % 20), 0, static_cast<std::uint8_t>(m == 0 ? 0 : 1), "Obj"});
    test::count_all_types(with_records, words);
    test::count(counted_last, test::Occurrence(words), NGram::_full_ngram_type);
    counted_last.count_empty(1);
  }
  counted_last.count_patterns();
  for (std::uint8_t type = 1; type < NGram::_types_count; ++type)
    EXPECT_EQ(counted_last.different(type), with_records.different(type));
  for (const std::uint32_t least_frequency : {0U, 2U}) {
    const auto expected = walk(with_records, least_frequency);
    const auto yielded = walk(counted_last, least_frequency);
    ASSERT_EQ(yielded.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      for (unsigned m = 0; m < 3; ++m)
        ASSERT_EQ(yielded[i].first->member(m), expected[i].first->member(m));
      ASSERT_EQ(yielded[i].second, expected[i].second);
    }
  }
}

TEST(NGramsProcessorTest, APatternThatIsNotThereIsAnError) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  test::count_all_types(store, {{1, 0, 2}, {2, 0, 0}}, 3);
  test::count(store, test::Occurrence({{1, 0, 2}, {3, 0, 0}}), 2);
  test::count(store, test::Occurrence({{1, 0, 2}, {3, 0, 0}}), 3);
  try {
    walk(store);
    FAIL() << "no error";
  } catch (const fatal_error& error) {
    EXPECT_STREQ(error.what(), "A pattern of type 1 of a counted N-gram is not in the store!");
  }
}

TEST(NGramsProcessorTest, YieldsTheFrequentFullNGramsInTheOrderOfTheStoreWithCountsByBruteForce) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto n = static_cast<std::uint8_t>(2 + seed % 3);
    const SettingsGuard guard(n, seed % 2 == 0);
    NGramStore store(2048);
    std::vector<std::vector<MemberSpec>> occurrences;
    for (int i = 0; i < 800; ++i) {
      std::vector<MemberSpec> words;
      for (unsigned m = 0; m < n; ++m) {
        words.push_back({static_cast<std::uint32_t>(random() % (i % 2 == 0 ? 4 : 60)),
                         static_cast<std::uint8_t>(random() % 2), static_cast<std::uint8_t>(m == 0 ? 0 : 1), "Obj"});
      }
      test::count_all_types(store, words);
      occurrences.push_back(words);
    }
    std::vector<const NGram*> listed = test::records_of(store, NGram::_full_ngram_type);
    const auto least_frequency = static_cast<std::uint32_t>(random() % 4);
    std::erase_if(listed, [&](const NGram* record) { return test::frequency_of(store, *record) < least_frequency; });
    const auto yielded = walk(store, least_frequency);
    ASSERT_EQ(yielded.size(), listed.size());
    for (std::size_t r = 0; r < listed.size(); ++r) {
      const auto& [record, frequencies] = yielded[r];
      ASSERT_EQ(record, listed[r]);
      Frequencies counted(NGram::_types_count, 0);
      for (const std::vector<MemberSpec>& words : occurrences) {
        std::uint8_t shared = 0;
        for (unsigned m = 0; m < n; ++m) {
          const NGram::Member member = record->member(m);
          const bool same = member.lemma() == words[m].lemma && member.tag() == words[m].tag;
          shared = static_cast<std::uint8_t>(2 * shared + (same ? 1 : 0));
        }
        for (std::uint8_t type = 0; type < NGram::_types_count; ++type)
          counted[type] += (shared & type) == type ? 1 : 0;
      }
      ASSERT_EQ(frequencies, counted);
    }
  }
}

}  // namespace
}  // namespace colx
