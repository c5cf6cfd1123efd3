// The list of context words of a record and its order.

#include "model/context.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <random>
#include <tuple>
#include <vector>

#include "tests/reference/plain_context_list.h"
#include "tests/support/random.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::ContextEntry;
using test::entries_of;
using test::Record;
using test::SettingsGuard;

using Entries = std::vector<ContextEntry>;

// A record under context tracing that sees words.
class ContextTest : public ::testing::Test {
 protected:
  void see(std::uint32_t lemma, int times = 1, bool narrow = false, std::uint8_t tag = 0) const {
    for (int i = 0; i < times; ++i)
      test::see(_record.sightings(), _record.contexts(), lemma, tag, narrow);
  }
  Entries seen() const { return entries_of(_record.contexts()); }

 private:
  SettingsGuard _guard{2, true};
  Record _record{{{1, 0, 2}, {2, 0, 0}}, 3};
};

PartOfContext part(std::uint32_t lemma, std::uint8_t tag, bool narrow, std::uint32_t frequency = 1) {
  return PartOfContext(TaggedLemma::pack(lemma, tag), narrow, frequency);
}

TEST(PartOfContextTest, IsOneWordSeenOnce) {
  const PartOfContext once = part(0xABCDEF, 200, true);
  EXPECT_EQ(once.lemma(), 0xABCDEFU);
  EXPECT_EQ(once.tag(), 200);
  EXPECT_EQ(once.frequency(), 1U);
  EXPECT_TRUE(once.narrow());
  EXPECT_FALSE(part(1, 1, false).narrow());
}

TEST(PartOfContextTest, AFullFrequencyStaysWhereItIs) {
  for (const bool narrow : {false, true}) {
    PartOfContext full = part(5, 6, narrow, 0x7FFFFFFE);
    EXPECT_TRUE(full.inc());
    EXPECT_EQ(full.frequency(), 0x7FFFFFFFU);
    EXPECT_FALSE(full.inc());
    EXPECT_EQ(full.frequency(), 0x7FFFFFFFU);
    EXPECT_EQ(full.narrow(), narrow);
    EXPECT_EQ(full.lemma(), 5U);
  }
}

TEST(PartOfContextTest, EqualityIsOfLemmaTagAndRole) {
  EXPECT_TRUE(part(5, 6, false) == part(5, 6, false, 9));
  EXPECT_FALSE(part(5, 6, false) == part(5, 6, true));
  EXPECT_FALSE(part(5, 6, false) == part(5, 7, false));
  EXPECT_FALSE(part(5, 6, false) == part(4, 6, false));
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
      test::see(record.sightings(), record.contexts(), lemma, tag, narrow);
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
      ASSERT_EQ(entries_of(record.contexts()), entries) << "after sighting " << time;
    }
  }
}

// Lists of many records at once, so that memory given back by one serves another; read at random times, and kept at
// others, all of them, as sightings are forgotten then.
TEST(ContextListTest, AgreesWithAListThatIsKeptInOrderAtEverySighting) {
  test::Random random;
  const SettingsGuard guard(2, true);
  for (int round = 0; round < 60; ++round) {
    const std::uint32_t vocabulary = 1 + random.below(random.once_in(3) ? 3000 : 20);
    const std::uint32_t longest = 1 + random.below(random.once_in(2) ? 3 : 100);
    const std::uint32_t rounds_between_readings = 1 + random.below(400);
    const bool skewed = random.once_in(2);
    struct Handle {
      unsigned char before;
      std::array<unsigned char, ContextList::handle_size> bytes;
    };
    ContextMemory memory;
    std::vector<Handle> handles(1 + random.below(8));
    std::vector<reference::PlainContextList> plain(handles.size());
    for (Handle& handle : handles)
      ContextList::clear(handle.bytes.data());
    const auto any_word = [&] {
      const std::uint32_t lemma = random.below(skewed ? 1 + random.below(vocabulary) : vocabulary);
      return TaggedLemma::pack(lemma, static_cast<std::uint8_t>(lemma % 254));
    };
    for (int additions = 0; additions < 600; ++additions) {
      const std::size_t at = random.below(static_cast<std::uint32_t>(handles.size()));
      ContextList list(handles[at].bytes.data(), 3, memory);
      Sighting sighting;
      sighting.words.fill(Sighting::none);
      sighting.begin = memory.sightings.words();
      for (std::uint32_t left = random.below(longest + 1); left > 0; --left) {
        const std::uint32_t word = any_word();
        memory.sightings.add_word(word);
        plain[at].add(PartOfContext(word, false));
      }
      sighting.end = memory.sightings.words();
      for (std::uint32_t* const beside : {&sighting.left, &sighting.right}) {
        if (random.once_in(3)) continue;
        *beside = any_word();
        plain[at].add(PartOfContext(*beside, true));
      }
      list.add(memory.sightings.add(sighting));
      if (random.once_in(100)) {
        for (Handle& handle : handles)
          ContextList(handle.bytes.data(), 3, memory).keep();
        memory.sightings.clear();
      }
      if (!random.once_in(rounds_between_readings) && additions < 580) continue;
      const auto parts = list.parts();
      ASSERT_EQ(parts.size(), plain[at].parts().size());
      for (std::size_t i = 0; i < parts.size(); ++i) {
        ASSERT_EQ(parts[i].key(), plain[at].parts()[i].key()) << "place " << i;
        ASSERT_EQ(parts[i].frequency(), plain[at].parts()[i].frequency()) << "place " << i;
      }
    }
  }
}

TEST(ContextTracingTest, ListsOfOneStoreAreNotShared) {
  const SettingsGuard guard(2, true);
  NGramStore store(2048);
  const ContextList a = store.contexts(*test::count(store, test::Occurrence({{1, 0, 2}, {2, 0, 0}}), 3));
  const ContextList b = store.contexts(*test::count(store, test::Occurrence({{1, 0, 2}, {3, 0, 0}}), 3));
  test::see(store.sightings(), a, 5, 0, true);
  test::see(store.sightings(), b, 6, 0, true);
  EXPECT_EQ(entries_of(a), (Entries{{5, 0, 1, true}}));
  EXPECT_EQ(entries_of(b), (Entries{{6, 0, 1, true}}));
}

}  // namespace
}  // namespace colx
