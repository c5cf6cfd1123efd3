// The list of context words of a record and its order.

#include "model/context.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <map>
#include <random>
#include <tuple>
#include <vector>

#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::ContextEntry;
using test::contexts_of;
using test::Record;
using test::SettingsGuard;

using Entries = std::vector<ContextEntry>;

// A record under context tracing that sees words.
class ContextTest : public ::testing::Test {
 protected:
  void see(std::uint32_t lemma, int times = 1, bool narrow = false, std::uint8_t tag = 0) const {
    for (int i = 0; i < times; ++i)
      _record->add_to_context(PartOfContext(lemma, tag, narrow));
  }
  Entries seen() const { return contexts_of(*_record); }

 private:
  SettingsGuard _guard{2, true};
  Record _record{{{1, 0, 2}, {2, 0, 0}}, 3};
};

// A part that has been seen as often as given: two 32-bit words, the first being the frequency and, above it, the flag.
PartOfContext part_seen(std::uint32_t frequency, bool narrow) {
  const auto words = std::bit_cast<std::array<std::uint32_t, 2>>(PartOfContext(5, 6, narrow));
  return std::bit_cast<PartOfContext>(std::array<std::uint32_t, 2>{(words[0] & 0x80000000U) | frequency, words[1]});
}

TEST(PartOfContextTest, IsOneWordSeenOnce) {
  const PartOfContext part(0xABCDEF, 200, true);
  EXPECT_EQ(part.lemma(), 0xABCDEFU);
  EXPECT_EQ(part.tag(), 200);
  EXPECT_EQ(part.frequency(), 1U);
  EXPECT_TRUE(part.narrow());
  EXPECT_FALSE(PartOfContext(1, 1, false).narrow());
}

TEST(PartOfContextTest, AFullFrequencyStaysWhereItIs) {
  for (const bool narrow : {false, true}) {
    PartOfContext part = part_seen(0x7FFFFFFE, narrow);
    part.inc();
    EXPECT_EQ(part.frequency(), 0x7FFFFFFFU);
    part.inc();
    EXPECT_EQ(part.frequency(), 0x7FFFFFFFU);
    EXPECT_EQ(part.narrow(), narrow);
    EXPECT_EQ(part.lemma(), 5U);
  }
}

TEST(PartOfContextTest, EqualityIsOfLemmaTagAndRole) {
  const PartOfContext part(5, 6, false);
  EXPECT_TRUE(part == part_seen(9, false));
  EXPECT_FALSE(part == PartOfContext(5, 6, true));
  EXPECT_FALSE(part == PartOfContext(5, 7, false));
  EXPECT_FALSE(part == PartOfContext(4, 6, false));
}

TEST_F(ContextTest, StartsEmpty) {
  EXPECT_TRUE(seen().empty());
}

TEST_F(ContextTest, TheSameWordCountsSeparatelyInTheTwoRoles) {
  see(7, 3);
  EXPECT_EQ(seen(), (Entries{{7, 0, 3, false}}));
  see(7, 1, true);
  EXPECT_EQ(seen(), (Entries{{7, 0, 3, false}, {7, 0, 1, true}}));
}

TEST_F(ContextTest, TheSameLemmaCountsSeparatelyUnderTwoTags) {
  see(7, 1, false, 1);
  see(7, 2, false, 2);
  EXPECT_EQ(seen(), (Entries{{7, 2, 2, false}, {7, 1, 1, false}}));
}

TEST_F(ContextTest, WordsOfOneFrequencyKeepTheOrderInWhichTheyReachedIt) {
  const std::uint32_t a = 10, b = 11, c = 12;
  see(a, 2);
  see(b, 2);
  see(c, 1);
  EXPECT_EQ(seen(), (Entries{{a, 0, 2, false}, {b, 0, 2, false}, {c, 0, 1, false}}));
  see(c);
  EXPECT_EQ(seen(), (Entries{{a, 0, 2, false}, {b, 0, 2, false}, {c, 0, 2, false}}));
  see(c);
  EXPECT_EQ(seen(), (Entries{{c, 0, 3, false}, {a, 0, 2, false}, {b, 0, 2, false}}));
}

TEST_F(ContextTest, NarrowAndWideWordsShareOneOrder) {
  see(1, 1, false);
  see(2, 2, true);
  see(3, 3, false);
  EXPECT_EQ(seen(), (Entries{{3, 0, 3, false}, {2, 0, 2, true}, {1, 0, 1, false}}));
}

TEST_F(ContextTest, IsOrderedByFrequencyAndThenByTheTimeOfReachingIt) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const Record record({{1, 0, 2}, {2, 0, 0}}, 3);
    // By word and role: frequency and the time of the last sighting, at which the frequency was reached.
    std::map<std::tuple<std::uint32_t, std::uint8_t, bool>, std::pair<std::uint32_t, int>> model;
    for (int time = 0; time < 1500; ++time) {
      // Few words often, many words rarely.
      const auto lemma = static_cast<std::uint32_t>(random() % (1 + random() % 60));
      const auto tag = static_cast<std::uint8_t>(random() % 2);
      const bool narrow = random() % 4 == 0;
      record->add_to_context(PartOfContext(lemma, tag, narrow));
      auto& [frequency, reached] = model[{lemma, tag, narrow}];
      ++frequency;
      reached = time;
      if (time % 100 != 99 && time >= 100) continue;
      std::vector<std::pair<int, ContextEntry>> expected;
      for (const auto& [word, counted] : model) {
        const auto& [l, t, role] = word;
        expected.push_back({counted.second, {l, t, counted.first, role}});
      }
      std::sort(expected.begin(), expected.end(), [](const auto& a, const auto& b) {
        return std::pair(b.second.frequency, a.first) < std::pair(a.second.frequency, b.first);
      });
      Entries entries;
      for (const auto& [when, entry] : expected)
        entries.push_back(entry);
      ASSERT_EQ(contexts_of(*record), entries) << "after sighting " << time;
    }
  }
}

TEST(ContextTracingTest, WithoutTracingNothingIsKept) {
  const SettingsGuard guard(2);
  const Record record({{1, 0, 2}, {2, 0, 0}}, 3);
  const std::vector<unsigned> before = record.bytes();
  record->add_to_context(PartOfContext(5, 0, true));
  EXPECT_EQ(record.bytes(), before);
  EXPECT_TRUE(contexts_of(*record).empty());
}

TEST(ContextTracingTest, ListsAreNotShared) {
  const SettingsGuard guard(2, true);
  const Record a({{1, 0, 2}, {2, 0, 0}}, 3);
  const Record b({{1, 0, 2}, {2, 0, 0}}, 3);
  a->add_to_context(PartOfContext(5, 0, true));
  b->add_to_context(PartOfContext(6, 0, true));
  EXPECT_EQ(contexts_of(*a), (Entries{{5, 0, 1, true}}));
  EXPECT_EQ(contexts_of(*b), (Entries{{6, 0, 1, true}}));
}

}  // namespace
}  // namespace colx
