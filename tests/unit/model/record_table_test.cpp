// The records of one type: which occurrences are the same record, and what is found.

#include "model/record_table.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/errors.h"
#include "model/ngrams.h"
#include "tests/support/random.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::Occurrence;
using test::SettingsGuard;

// Random words for an occurrence: few of everything, so that many occurrences are the same.
std::vector<MemberSpec> random_words(test::Random& random, unsigned n, std::uint32_t lemmas) {
  constexpr std::array<const char*, 3> relations = {"Adv", "Obj", "Sb"};
  std::vector<MemberSpec> words;
  for (unsigned m = 0; m < n; ++m) {
    words.push_back({random.below(lemmas), static_cast<std::uint8_t>(random.below(2)),
                     static_cast<std::uint8_t>(random.below(n + 1)), relations[random.below(3)]});
  }
  return words;
}

TEST(RecordTableTest, AnyFieldOfASignificantPositionMakesAnotherRecord) {
  const SettingsGuard guard(3);
  NGramStore store(2048);
  const auto count = [&](MemberSpec first) { return test::count(store, Occurrence({first, {5, 5, 0}, {6, 6, 2}}), 5); };
  std::set<const NGram*> records;
  for (const MemberSpec& first : {MemberSpec{10, 3, 2, "Atr"}, MemberSpec{11, 3, 2, "Atr"}, MemberSpec{10, 4, 2, "Atr"},
                                  MemberSpec{10, 3, 3, "Atr"}, MemberSpec{10, 3, 2, "Obj"}}) {
    const NGram* const record = count(first);
    EXPECT_TRUE(records.insert(record).second);
    EXPECT_EQ(count(first), record);
    EXPECT_EQ(test::frequency_of(store, *record), 2U);
  }
  EXPECT_EQ(store.records(5).size(), 5U);
}

TEST(RecordTableTest, OpenPositionsDoNotMatter) {
  const SettingsGuard guard(3);
  NGramStore store(2048);
  const NGram* const record = test::count(store, Occurrence({{1, 1, 2}, {2, 2, 0}, {3, 3, 2}}), 5);
  EXPECT_EQ(test::count(store, Occurrence({{1, 1, 2}, {9, 9, 3}, {3, 3, 2}}), 5), record);
}

TEST(RecordTableTest, TheSameMembersInTheOtherOrderAreAnotherRecord) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  const NGram* const record = test::count(store, Occurrence({{1, 1, 0}, {2, 2, 0}}), 3);
  EXPECT_NE(test::count(store, Occurrence({{2, 2, 0}, {1, 1, 0}}), 3), record);
  EXPECT_EQ(store.records(3).size(), 2U);
}

TEST(RecordTableTest, NumbersRecordsInOrderOfFirstSight) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  for (std::uint32_t lemma = 0; lemma < 5000; ++lemma) {
    const NGram* const record = test::count(store, Occurrence({{lemma, 0, 2}, {1, 0, 0}}), 2);
    ASSERT_EQ(store.records(2).record(lemma), record);
  }
  EXPECT_EQ(store.records(2).size(), 5000U);
  for (std::uint32_t lemma = 0; lemma < 5000; ++lemma)
    ASSERT_EQ(store.records(2).record(lemma)->member(0).lemma(), lemma);
}

TEST(RecordTableTest, ARecordSeenTwiceInOneBatchIsMadeOnce) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  OccurrenceBatch batch;
  const Occurrence a({{1, 0, 2}, {2, 0, 0}}), b({{3, 0, 2}, {2, 0, 0}});
  for (const Occurrence* occurrence : {&a, &b, &a, &a})
    occurrence->add_to(batch);
  std::vector<const NGram*> records;
  store.records(3).count(
      batch, [](std::size_t) { return true; }, [&](std::size_t, const NGram* record) { records.push_back(record); });
  const NGram* const first = store.records(3).record(0);
  const NGram* const second = store.records(3).record(1);
  EXPECT_EQ(records, (std::vector<const NGram*>{first, second, first, first}));
  EXPECT_EQ(test::frequency_of(store, *first), 3U);
  EXPECT_EQ(store.records(3).size(), 2U);
}

TEST(RecordTableTest, AnOccurrenceThatIsNotAdmittedIsReportedWithoutARecord) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  OccurrenceBatch batch;
  const Occurrence a({{1, 0, 2}, {2, 0, 0}}), b({{3, 0, 2}, {2, 0, 0}});
  for (const Occurrence* occurrence : {&a, &b, &a, &b})
    occurrence->add_to(batch);
  std::vector<bool> counted;
  store.records(3).count(
      batch, [](std::size_t occurrence) { return occurrence % 2 == 1; },
      [&](std::size_t occurrence, const NGram* record) {
        EXPECT_EQ(occurrence, counted.size());
        counted.push_back(record != nullptr);
      });
  EXPECT_EQ(counted, (std::vector<bool>{false, true, false, true}));
  EXPECT_EQ(store.records(3).size(), 1U);
  EXPECT_EQ(test::frequency_of(store, *store.records(3).record(0)), 2U);
}

TEST(RecordTableTest, FindsWhatWasCountedAndNothingElse) {
  const SettingsGuard guard(2);
  test::Random random;
  NGramStore store(2048);
  std::map<std::vector<std::uint64_t>, const NGram*> model;
  for (int i = 0; i < 4000; ++i) {
    const Occurrence occurrence(random_words(random, 2, 30));
    const std::vector<std::uint64_t> key = {occurrence.members()[0].bits(), occurrence.members()[1].bits()};
    if (random.once_in(2)) model[key] = test::count(store, occurrence, 3);
    const auto counted = model.find(key);
    ASSERT_EQ(test::find(store, occurrence, 3), counted == model.end() ? nullptr : counted->second);
  }
}

TEST(RecordTableTest, AddsAFrequencyAsSoManyOccurrences) {
  test::Random random;
  for (int round = 0; round < 24; ++round) {
    const auto n = static_cast<std::uint8_t>(2 + round % 6);
    const SettingsGuard guard(n, random.once_in(2));
    NGramStore added(2048), counted(2048);
    const auto type = static_cast<std::uint8_t>(1 + random.below(NGram::_full_ngram_type));
    for (int i = 0; i < 400; ++i) {
      const Occurrence occurrence(random_words(random, n, 4));
      const std::uint32_t frequency = random.below(6);
      const NGram* const record = added.records(type).add(occurrence.members(type), frequency);
      if (random.once_in(4)) {
        test::count(added, occurrence, type);
        test::count(counted, occurrence, type);
      }
      for (std::uint32_t times = 0; times < frequency; ++times)
        test::count(counted, occurrence, type);
      ASSERT_EQ(record == nullptr, frequency == 0);
      if (record != nullptr) {
        ASSERT_EQ(record, test::find(added, occurrence, type));
      }
      ASSERT_EQ(added.records(type).size(), counted.records(type).size());
    }
    for (std::uint32_t r = 0; r < added.records(type).size(); ++r) {
      const NGram& a = *added.records(type).record(r);
      const NGram& b = *counted.records(type).record(r);
      ASSERT_EQ(test::frequency_of(added, a), test::frequency_of(counted, b));
      for (unsigned m = 0; m < a.members_count(); ++m)
        ASSERT_EQ(a.member(m), b.member(m));
    }
  }
}

TEST(RecordTableTest, AddsMoreThanACounterHolds) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  const Occurrence occurrence({{1, 0, 2}, {2, 0, 0}});
  const NGram& record = *store.records(3).add(occurrence.members(), 4294967295U);
  EXPECT_EQ(store.records(3).frequency(record), 4294967295U);
  store.records(3).add(occurrence.members(), 4294967295U);
  EXPECT_EQ(store.records(3).frequency(record), 4294967295U);
  EXPECT_EQ(record.type(), 3);
  EXPECT_EQ(store.records(3).size(), 1U);
}

TEST(RecordTableTest, AddingLeavesContextWordsAlone) {
  const SettingsGuard guard(2, true);
  NGramStore store(2048);
  const Occurrence occurrence({{1, 0, 2}, {2, 0, 0}});
  NGram& record = *store.records(3).add(occurrence.members(), 5);
  EXPECT_TRUE(test::entries_of(store.contexts(record)).empty());
  test::see(store.sightings(), store.contexts(record), 7, 0, false);
  store.records(3).add(occurrence.members(), 5);
  EXPECT_EQ(test::entries_of(store.contexts(record)), (std::vector<test::ContextEntry>{{7, 0, 1, false}}));
}

TEST(RecordTableTest, CarriedAmountsBelongToOneTable) {
  const SettingsGuard guard(2);
  const Occurrence occurrence({{1, 0, 2}, {2, 0, 0}});
  for (int round = 0; round < 2; ++round) {
    NGramStore store(2048);  // in the memory of the one before, as likely as not
    const NGram& record = *store.records(3).add(occurrence.members(), 1);
    EXPECT_EQ(test::frequency_of(store, record), 1U);
    store.records(3).add(occurrence.members(), 16777215);
    EXPECT_EQ(test::frequency_of(store, record), 16777216U);
  }
}

// What an error says that some action throws.
template <typename Action>
std::string error_of(const Action& action) {
  try {
    action();
  } catch (const fatal_error& error) {
    return error.what();
  }
  return "";
}

TEST(RecordTableTest, OneRecordMoreThanThereCanBeIsAnError) {
  const SettingsGuard guard(2);
  VoidPool pool(RecordTable::records_per_chunk * NGram::_ngrams_memory_sizes[2]);
  RecordTable table(3, pool, 3000);
  const auto add = [&](std::uint32_t lemma) { table.add(Occurrence({{lemma, 0, 2}, {2, 0, 0}}).members(), 1); };
  for (std::uint32_t lemma = 0; lemma < 3000; ++lemma)
    add(lemma);
  EXPECT_EQ(error_of([&] { add(3000); }),
            "There are more than 3000 different N-grams of type 3, which is as many as can be counted!");
  EXPECT_EQ(table.size(), 3000U);
  add(2999);
  EXPECT_EQ(table.frequency(*table.record(2999)), 2U);
  OccurrenceBatch batch;
  Occurrence({{3001, 0, 2}, {2, 0, 0}}).add_to(batch);
  EXPECT_NE(error_of([&] {
              table.count(
                  batch, [](std::size_t) { return true; }, [](std::size_t, const NGram*) {});
            }),
            "");
}

TEST(RecordTableTest, CountingWithoutTheIndexIsAnError) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  const Occurrence occurrence({{1, 0, 2}, {2, 0, 0}});
  test::count(store, occurrence, 3);
  store.records(3).release_index();
  EXPECT_EQ(test::find(store, occurrence, 3), nullptr);
  EXPECT_EQ(error_of([&] { test::count(store, occurrence, 3); }),
            "N-grams of type 3 cannot be counted any more: their index is gone!");
}

TEST(RecordTableTest, CountsBatchesOfRandomOccurrencesAsAMapDoes) {
  test::Random random;
  for (int round = 0; round < 24; ++round) {
    const auto n = static_cast<std::uint8_t>(2 + round % 6);
    const SettingsGuard guard(n, random.once_in(2));
    NGramStore store(2048);
    const auto type = static_cast<std::uint8_t>(1 + random.below(NGram::_full_ngram_type));
    RecordTable& table = store.records(type);
    const std::uint32_t lemmas = random.once_in(2) ? 3 : 200;
    std::map<std::vector<std::uint64_t>, std::uint32_t> frequencies;
    for (int batches = 0; batches < 25; ++batches) {
      OccurrenceBatch batch;
      std::vector<std::vector<std::uint64_t>> keys;
      for (std::uint32_t left = 1 + random.below(OccurrenceBatch::capacity); left > 0; --left) {
        const Occurrence occurrence(random_words(random, n, lemmas));
        occurrence.add_to(batch);
        keys.emplace_back();
        for (const NGram::Member member : occurrence.members(type))
          keys.back().push_back(member.bits());
      }
      table.count(
          batch, [](std::size_t) { return true; },
          [&](std::size_t occurrence, const NGram* record) {
            ASSERT_EQ(table.frequency(*record), ++frequencies[keys[occurrence]]);
            for (unsigned m = 0; m < record->members_count(); ++m)
              ASSERT_EQ(record->member(m).bits(), keys[occurrence][m]);
          });
    }
    ASSERT_EQ(table.size(), frequencies.size());
  }
}

}  // namespace
}  // namespace colx
