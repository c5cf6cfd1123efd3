// Frequencies of patterns worked out from N-grams, against counting every pattern of every occurrence.

#include "model/pattern_frequencies.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <vector>

#include "model/ngrams.h"
#include "tests/support/random.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::SettingsGuard;

// Compares all that is worked out from the N-grams of a store with the records of their patterns in it.
void expect_agreement(const NGramStore& store) {
  const RecordTable& ngrams = store.records(NGram::_full_ngram_type);
  PatternFrequencies patterns;
  patterns.make_room(ngrams.size() / 2);
  patterns.work_out(ngrams);
  for (std::uint8_t type = 1; type < NGram::_types_count; ++type)
    EXPECT_EQ(patterns.different(type), store.records(type).size()) << "of type " << unsigned{type};
  for (std::uint32_t number = 0; number < ngrams.size(); ++number) {
    patterns.prefetch(number);
    const std::span<const std::uint32_t> frequencies = patterns.of(number);
    ASSERT_EQ(frequencies.size(), NGram::_full_ngram_type);
    OccurrenceBatch batch;
    batch.add();
    for (unsigned i = 0; i < settings::n; ++i)
      batch.set_last(i, ngrams.record(number)->member(i));
    for (std::uint8_t type = 1; type < NGram::_types_count; ++type) {
      store.records(type).find(batch, [&](std::size_t, const NGram* record) {
        ASSERT_NE(record, nullptr);
        ASSERT_EQ(frequencies[type - 1U], store.records(type).frequency(*record)) << "of type " << unsigned{type};
      });
    }
  }
}

TEST(PatternFrequenciesTest, WithoutNGramsThereAreNoPatterns) {
  const SettingsGuard guard(3);
  const NGramStore store(2048);
  expect_agreement(store);
}

TEST(PatternFrequenciesTest, APatternOccursAsOftenAsTheNGramsThatHaveIt) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  test::count_all_types(store, {{1, 0, 2}, {2, 0, 0}}, 3);
  test::count_all_types(store, {{1, 0, 2}, {3, 0, 0}}, 4);
  test::count_all_types(store, {{4, 0, 2}, {2, 0, 0}}, 5);
  PatternFrequencies patterns;
  patterns.work_out(store.records(3));
  EXPECT_EQ(patterns.different(1), 2U);
  EXPECT_EQ(patterns.different(2), 2U);
  EXPECT_EQ(patterns.different(3), 3U);
  // The second word 3 + 5, the first 3 + 4, both 3.
  const std::span<const std::uint32_t> first = patterns.of(0);
  EXPECT_EQ(std::vector<std::uint32_t>(first.begin(), first.end()), (std::vector<std::uint32_t>{8, 7, 3}));
}

TEST(PatternFrequenciesTest, MembersAreToldApartByEverythingTheyAre) {
  const SettingsGuard guard(3);
  NGramStore store(2048);
  test::count_all_types(store, {{1, 0, 2}, {2, 0, 0}, {3, 0, 2}});
  test::count_all_types(store, {{1, 1, 2}, {2, 0, 0}, {3, 0, 2}});
  test::count_all_types(store, {{1, 0, 3}, {2, 0, 0}, {3, 0, 2}});
  test::count_all_types(store, {{1, 0, 2, "Obj"}, {2, 0, 0}, {3, 0, 2}});
  test::count_all_types(store, {{1 << 23, 0, 2}, {2, 0, 0}, {3, 0, 2}});
  EXPECT_EQ(store.records(4).size(), 5U);
  expect_agreement(store);
}

TEST(PatternFrequenciesTest, FrequenciesStayAtTheLargestNumber) {
  const SettingsGuard guard(3);
  NGramStore store(2048);
  const std::vector<std::vector<MemberSpec>> given = {
      {{1, 0, 2}, {2, 0, 0}, {3, 0, 2}}, {{1, 0, 2}, {2, 0, 0}, {4, 0, 2}}, {{5, 0, 2}, {2, 0, 0}, {4, 0, 2}}};
  std::uint32_t frequency = 0xFFFFFFFF;
  for (const std::vector<MemberSpec>& words : given) {
    const test::Occurrence occurrence(words);
    for (std::uint8_t type = 1; type < NGram::_types_count; ++type)
      store.records(type).add(occurrence.members(type), frequency);
    frequency = frequency == 0xFFFFFFFF ? 0x01FFFFFF : 3;
  }
  expect_agreement(store);
}

TEST(PatternFrequenciesTest, AgreesWithCountingEveryPatternOfEveryOccurrence) {
  test::Random random;
  const struct {
    std::uint8_t n;
    unsigned occurrences;
  } runs[] = {{1, 500}, {2, 5000}, {3, 30000}, {4, 3000}, {5, 2000}, {7, 400}};
  for (const auto& run : runs) {
    SCOPED_TRACE(::testing::Message() << "N = " << unsigned{run.n});
    const SettingsGuard guard(run.n);
    NGramStore store(2048);
    OccurrenceBatch batch;
    const auto count = [&] {
      for (std::uint8_t type = 1; type < NGram::_types_count; ++type) {
        store.records(type).count(
            batch, [](std::size_t) { return true; }, [](std::size_t, const NGram*) {});
      }
      batch.clear();
    };
    for (unsigned i = 0; i < run.occurrences; ++i) {
      std::vector<MemberSpec> words;
      for (unsigned m = 0; m < run.n; ++m)
        words.push_back({random.below(random.once_in(2) ? 5 : 400), static_cast<std::uint8_t>(random.below(2)),
                         static_cast<std::uint8_t>(random.below(run.n + 1U)), random.once_in(2) ? "Obj" : "Sb"});
      test::Occurrence(words).add_to(batch);
      if (batch.full()) count();
    }
    count();
    expect_agreement(store);
    if (::testing::Test::HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace colx
