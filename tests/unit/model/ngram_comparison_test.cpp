// Ordering and equality of records.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "model/ngram.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::Record;
using test::SettingsGuard;

TEST(NGramComparisonTest, TheTypeComesFirst) {
  const SettingsGuard guard(2);
  const Record low({{9, 9, 2}, {9, 9, 0}}, 1);
  const Record high({{1, 1, 2}, {1, 1, 0}}, 2);
  EXPECT_TRUE(*low < *high);
  EXPECT_FALSE(*high < *low);
  EXPECT_FALSE(*low == *high);
}

TEST(NGramComparisonTest, EmptyRecordsAreEqual) {
  const SettingsGuard guard(2);
  const Record a({{1, 1, 2}, {2, 2, 0}}, 0);
  const Record b({{3, 3, 0}, {4, 4, 1}}, 0);
  EXPECT_TRUE(*a == *b);
  EXPECT_FALSE(*a < *b);
  EXPECT_FALSE(*b < *a);
}

TEST(NGramComparisonTest, TheTagDecidesOnlyWhenLemmaParentAndRelationAgree) {
  const SettingsGuard guard(3);
  const auto record = [](MemberSpec first) { return Record({first, {5, 5, 0}, {6, 6, 2}}, 7); };
  const Record base = record({10, 3, 2, "Atr"});
  const Record larger_tag = record({10, 4, 2, "Atr"});
  EXPECT_FALSE(*base == *larger_tag);
  EXPECT_TRUE(*base < *larger_tag);
  // A small tag does not help against a larger lemma, parent or relation.
  EXPECT_TRUE(*larger_tag < *record({11, 0, 2, "Atr"}));
  EXPECT_TRUE(*larger_tag < *record({10, 0, 3, "Atr"}));
  EXPECT_TRUE(*larger_tag < *record({10, 0, 2, "Obj"}));
  // The parent comes before the relation, the lemma before the parent.
  EXPECT_TRUE(*record({10, 3, 2, "Sb"}) < *record({10, 3, 3, "Adv"}));
  EXPECT_TRUE(*record({10, 3, 3, "Sb"}) < *record({11, 3, 2, "Adv"}));
}

TEST(NGramComparisonTest, AnEarlierMemberDecidesBeforeALaterOne) {
  const SettingsGuard guard(2);
  EXPECT_TRUE(*Record({{1, 1, 2}, {9, 9, 0}}, 3) < *Record({{1, 2, 2}, {0, 0, 0}}, 3));
}

TEST(NGramComparisonTest, CounterAndFlagDoNotMatter) {
  const SettingsGuard guard(2);
  const std::vector<MemberSpec> words = {{1, 0, 2}, {2, 0, 0}};
  const Record once(words, 3);
  const Record often(words, 3);
  often.set_counter(16777215);
  often->inc();
  EXPECT_TRUE(*once == *often);
  EXPECT_FALSE(*once < *often);
  EXPECT_FALSE(*often < *once);
}

TEST(NGramComparisonTest, AgreesWithTheComparisonOfTheFieldsInTheirOrder) {
  const SettingsGuard guard(3);
  constexpr std::array<const char*, 3> relations = {"Adv", "Obj", "Sb"};
  for (unsigned seed = 1; seed <= 5; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    // For each record: its type, then lemma, parent, relation and tag of each member, as plain numbers.
    std::vector<std::pair<Record, std::vector<unsigned>>> records;
    for (int i = 0; i < 150; ++i) {
      std::vector<MemberSpec> words;
      for (int m = 0; m < 3; ++m) {
        words.push_back({static_cast<std::uint32_t>(random() % 2), static_cast<std::uint8_t>(random() % 2),
                         static_cast<std::uint8_t>(random() % 3), relations[random() % 3]});
      }
      const auto type = static_cast<std::uint8_t>(random() % 2 == 0 ? 7 : random() % 8);
      std::vector<unsigned> fields = {type};
      for (unsigned m = 0; m < 3; ++m) {
        if ((type & (4U >> m)) == 0) continue;
        const unsigned head = 96;
        const unsigned code = words[m].parent == 0 ? head : test::relation(words[m].dependency);
        fields.insert(fields.end(), {words[m].lemma, words[m].parent, code, words[m].tag});
      }
      records.emplace_back(Record(words, type), fields);
    }
    for (const auto& [a, fields_a] : records) {
      for (const auto& [b, fields_b] : records) {
        ASSERT_EQ(*a < *b, fields_a < fields_b);
        ASSERT_EQ(*a == *b, fields_a == fields_b);
      }
    }
  }
}

}  // namespace
}  // namespace colx
