// Occurrences among the words of the corpus: what each type sees of a window, and which occurrences are of a list.

#include "model/sightings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "model/ngram.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::SettingsGuard;
using Words = std::vector<std::uint32_t>;

// What a record of a type sees: wide and narrow ones.
std::pair<Words, Words> seen(const Sightings& sightings, std::uint32_t number, std::uint8_t type) {
  std::pair<Words, Words> all;
  sightings.read(
      number, type,
      [&](std::span<const std::uint32_t> words) {
        EXPECT_FALSE(words.empty());
        all.first.insert(all.first.end(), words.begin(), words.end());
      },
      [&](std::uint32_t word) { all.second.push_back(word); });
  return all;
}

TEST(SightingsTest, ARecordSeesTheWindowButForItsOwnWords) {
  const SettingsGuard guard(3, true);
  Sightings sightings;
  for (std::uint32_t word = 100; word < 110; ++word)
    sightings.add_word(word);
  Sighting sighting;
  sighting.begin = 2;
  sighting.end = 7;
  sighting.words = {1, 3, 6};  // the first outside the window
  sighting.left = 55;
  const std::uint32_t number = sightings.add(sighting);
  EXPECT_EQ(number, 1U);
  EXPECT_EQ(seen(sightings, number, 7), (std::pair<Words, Words>{{102, 104, 105}, {55}}));
  EXPECT_EQ(seen(sightings, number, 4), (std::pair<Words, Words>{{102, 103, 104, 105, 106}, {}}));
  EXPECT_EQ(seen(sightings, number, 2), (std::pair<Words, Words>{{102, 104, 105, 106}, {}}));
  EXPECT_EQ(seen(sightings, number, 1), (std::pair<Words, Words>{{102, 103, 104, 105}, {}}));
}

// Against word after word of the window, each compared with all words of the occurrence.
TEST(SightingsTest, EveryTypeSeesWhatIsInTheWindowAndNotItsOwn) {
  test::Random random;
  for (int round = 0; round < 200; ++round) {
    const SettingsGuard guard(static_cast<std::uint8_t>(2 + random.below(6)), true);
    Sightings sightings;
    const std::uint32_t words = settings::n + random.below(20);
    for (std::uint32_t word = 0; word < words; ++word)
      sightings.add_word(1000 + word);
    Words places(words);
    for (std::uint32_t place = 0; place < words; ++place)
      places[place] = place;
    while (places.size() > settings::n)
      places.erase(places.begin() + random.below(static_cast<std::uint32_t>(places.size())));
    Sighting sighting;
    for (std::size_t i = 0; i < places.size(); ++i)
      sighting.words[i] = random.once_in(5) ? Sighting::none : places[i];
    sighting.begin = random.below(words + 1);
    sighting.end = sighting.begin + random.below(words - sighting.begin + 1);
    const std::uint32_t number = sightings.add(sighting);
    for (std::uint8_t type = 1; type <= NGram::_full_ngram_type && type != 0; ++type) {
      Words expected;
      for (std::uint32_t place = sighting.begin; place < sighting.end; ++place) {
        bool own = false;
        for (unsigned i = 0; i < settings::n; ++i)
          own = own || (NGram::significant(type, i) && sighting.words[i] == place);
        if (!own) expected.push_back(1000 + place);
      }
      ASSERT_EQ(seen(sightings, number, type).first, expected) << "type " << unsigned{type};
    }
  }
}

TEST(SightingsTest, TheSightingsOfAListAreThoseThatWereGivenToItInTheirOrder) {
  test::Random random;
  const SettingsGuard guard(2, true);
  for (int round = 0; round < 10; ++round) {
    Sightings sightings;
    std::vector<std::vector<Words>> expected(NGram::_types_count);
    const std::uint32_t most = random.once_in(2) ? 12000 : 50;  // more than a chunk, or few
    for (std::uint32_t left = 1 + random.below(most); left > 0; --left) {
      const std::uint32_t number = sightings.add({});
      for (std::uint8_t type = 1; type < NGram::_types_count; ++type) {
        std::vector<Words>& lists = expected[type];
        if (random.once_in(4)) continue;  // of no list
        if (lists.empty() || random.once_in(20)) {
          lists.emplace_back();
          ASSERT_EQ(sightings.new_list(type), lists.size());
        }
        const std::uint32_t list = random.below(static_cast<std::uint32_t>(lists.size()));
        sightings.set_list(number, type, list + 1);
        lists[list].push_back(number);
      }
      if (!random.once_in(most / 10) && left != 1) continue;
      for (std::uint8_t type = 1; type < NGram::_types_count; ++type) {
        for (std::size_t list = 0; list < expected[type].size(); ++list) {
          const auto numbers = sightings.of_list(type, static_cast<std::uint32_t>(list + 1));
          ASSERT_TRUE(
              std::equal(numbers.begin(), numbers.end(), expected[type][list].begin(), expected[type][list].end()));
        }
      }
    }
  }
}

TEST(SightingsTest, WhatIsForgottenLeavesListsBehindThatAreEmpty) {
  const SettingsGuard guard(2, true);
  Sightings sightings;
  sightings.add_word(5);
  const std::uint32_t list = sightings.new_list(3);
  sightings.set_list(sightings.add({}), 3, list);
  EXPECT_EQ(sightings.of_list(3, list).size(), 1U);
  sightings.clear();
  EXPECT_EQ(sightings.size(), 0U);
  EXPECT_EQ(sightings.words(), 0U);
  EXPECT_TRUE(sightings.of_list(3, list).empty());
  EXPECT_EQ(sightings.new_list(3), list + 1);
  EXPECT_EQ(sightings.add({}), 1U);
  EXPECT_TRUE(sightings.of_list(3, list).empty());
}

}  // namespace
}  // namespace colx
