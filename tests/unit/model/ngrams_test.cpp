// The store that counts records by type.

#include "model/ngrams.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/config.h"
#include "model/ngram_hash.h"
#include "tests/reference/chained_table.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::frequency_of;
using test::MemberSpec;
using test::Occurrence;
using test::records_of;
using test::SettingsGuard;

const std::vector<MemberSpec> pair = {{1, 1, 2}, {2, 2, 0}};

TEST(NGramStoreTest, TheSecondOccurrenceFindsTheRecordOfTheFirst) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  const Occurrence occurrence(pair);
  const NGram* const first = test::count(store, occurrence, 3);
  EXPECT_EQ(frequency_of(store, *first), 1U);
  EXPECT_EQ(test::count(store, occurrence, 3), first);
  EXPECT_EQ(frequency_of(store, *first), 2U);
  EXPECT_EQ(frequency_of(store, pair, 3), 2U);
}

TEST(NGramStoreTest, RecordsThatDifferOnlyInATagHashAlikeAndAreTwo) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  const NGram* const a = test::count(store, Occurrence({{1, 1, 2}, {2, 2, 0}}), 3);
  const NGram* const b = test::count(store, Occurrence({{1, 1, 2}, {2, 3, 0}}), 3);
  EXPECT_EQ(NGramHashCounter::count_hash(*a, 2), NGramHashCounter::count_hash(*b, 2));
  EXPECT_NE(a, b);
  EXPECT_EQ(records_of(store, 3).size(), 2U);
}

TEST(NGramStoreTest, TypesAreKeptApart) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  // The same word as first and as second member.
  test::count_all_types(store, {{7, 1, 0}, {7, 1, 0}});
  EXPECT_EQ(records_of(store, 1).size(), 1U);
  EXPECT_EQ(records_of(store, 2).size(), 1U);
  EXPECT_EQ(records_of(store, 3).size(), 1U);
  EXPECT_NE(records_of(store, 1)[0], records_of(store, 2)[0]);
}

TEST(NGramStoreTest, TheEmptyNGramCountsOccurrences) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  EXPECT_EQ(store.empty_frequency(), 0U);
  store.count_empty(1);
  test::count_all_types(store, pair, 4);
  EXPECT_EQ(store.empty_frequency(), 5U);
  store.count_empty(0);
  EXPECT_EQ(store.empty_frequency(), 5U);
}

TEST(NGramStoreTest, TheFrequencyOfTheEmptyNGramSaturates) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  store.count_empty(4294967294U);
  store.count_empty(1);
  EXPECT_EQ(store.empty_frequency(), 4294967295U);
  store.count_empty(1);
  EXPECT_EQ(store.empty_frequency(), 4294967295U);
}

TEST(NGramStoreTest, FindsNothingForARecordThatIsNotThere) {
  const SettingsGuard guard(2);
  NGramStore store(2048);
  const Occurrence occurrence(pair);
  EXPECT_EQ(test::find(store, occurrence, 3), nullptr);
  const NGram* const record = test::count(store, occurrence, 3);
  EXPECT_EQ(test::find(store, occurrence, 3), record);
  EXPECT_EQ(test::find(store, occurrence, 1), nullptr);
}

TEST(NGramStoreTest, HasATableForEveryTypeButThatOfTheEmptyNGram) {
  const SettingsGuard guard(3);
  const NGramStore store(constants::ngram_within_block);
  for (std::uint8_t type = 1; type < 8; ++type)
    EXPECT_TRUE(records_of(store, type).empty());
}

TEST(NGramStoreTest, InitialisesOnceAndNotWithZero) {
  const SettingsGuard guard(2);
  NGramStore store(0);
  store.init(0);
  store.init(2048);
  test::count_all_types(store, pair);
  store.init(4096);
  EXPECT_EQ(frequency_of(store, pair, 3), 1U);
  EXPECT_EQ(frequency_of(store, pair, 0), 1U);
}

TEST(NGramStoreTest, ABlockHolds16384RecordsOfItsNumberOfMembersWithoutGaps) {
  const SettingsGuard guard(3);
  // With 1, 2 and 3 members: blocks of 163,840, 262,144 and 360,448 bytes, records of 10, 16 and 22.
  for (const auto& [type, size] : {std::pair<std::uint8_t, std::ptrdiff_t>{4, 10}, {6, 16}, {7, 22}}) {
    NGramStore store(constants::ngram_within_block);
    const char* first = nullptr;
    for (std::uint32_t lemma = 0; lemma < 16384; ++lemma) {
      const Occurrence occurrence({{lemma, 0, 2}, {1, 0, 0}, {2, 0, 2}});
      const char* const address = reinterpret_cast<const char*>(test::count(store, occurrence, type));
      if (first == nullptr) first = address;
      ASSERT_EQ(address, first + static_cast<std::ptrdiff_t>(lemma) * size) << "type " << unsigned{type};
    }
  }
}

TEST(NGramStoreTest, AStoredRecordStartsWithoutContextsAndTracesItsOwn) {
  const SettingsGuard guard(2, true);
  NGramStore store(2048);
  NGram* const record = test::count(store, Occurrence(pair), 3);
  EXPECT_TRUE(test::entries_of(store.contexts(*record)).empty());
  test::see(store.sightings(), store.contexts(*record), 5, 1, false);
  NGram* const other = test::count(store, Occurrence({{8, 1, 2}, {2, 2, 0}}), 3);
  EXPECT_TRUE(test::entries_of(store.contexts(*other)).empty());
  EXPECT_EQ(test::entries_of(store.contexts(*record)).size(), 1U);
}

TEST(NGramStoreTest, CountsEveryPatternOfRandomOccurrences) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto n = static_cast<std::uint8_t>(2 + seed % 4);
    const SettingsGuard guard(n, seed % 2 == 0);
    NGramStore store(2048);
    // By type: frequency, hash and time of first sight of every pattern, which is written out as text.
    std::vector<std::map<std::string, std::uint32_t>> frequencies(NGram::_types_count);
    std::vector<reference::ChainedTable> tables(NGram::_types_count);
    std::vector<std::vector<const NGram*>> inserted(NGram::_types_count);
    for (int i = 0; i < 3000; ++i) {
      std::vector<MemberSpec> words;
      for (unsigned m = 0; m < n; ++m)
        words.push_back({static_cast<std::uint32_t>(random() % 9), static_cast<std::uint8_t>(random() % 2),
                         static_cast<std::uint8_t>(m == 0 ? 0 : 1), random() % 2 == 0 ? "Obj" : "Sb"});
      const Occurrence occurrence(words);
      for (std::uint8_t type = 1; type < NGram::_types_count; ++type) {
        std::string pattern;
        for (unsigned m = 0; m < n; ++m) {
          pattern += '|';
          if (((unsigned{type} >> (n - 1U - m)) & 1U) == 0) continue;
          pattern += std::to_string(words[m].lemma) + '/' + std::to_string(words[m].tag);
          if (m > 0) pattern += words[m].dependency;
        }
        const NGram* const record = test::count(store, occurrence, type);
        const std::uint32_t frequency = ++frequencies[type][pattern];
        ASSERT_EQ(frequency_of(store, *record), frequency) << pattern;
        if (frequency > 1) continue;
        tables[type].insert(NGramHashCounter::count_hash(*record, record->members_count()), inserted[type].size());
        inserted[type].push_back(record);
      }
    }
    for (std::uint8_t type = 1; type < NGram::_types_count; ++type) {
      std::vector<const NGram*> expected;
      for (const std::size_t place : tables[type].order())
        expected.push_back(inserted[type][place]);
      ASSERT_EQ(records_of(store, type), expected) << "type " << unsigned{type};
    }
  }
}

}  // namespace
}  // namespace colx
