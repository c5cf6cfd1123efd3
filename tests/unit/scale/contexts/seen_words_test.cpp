// Lists of context words put together from pieces, against the list of ngrex, to which sightings come one by one.

#include "scale/contexts/seen_words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "model/context_folder.h"
#include "tests/support/random.h"

namespace colx::scale {
namespace {

constexpr std::uint32_t largest = PartOfContext::_max_frequency;

std::vector<SeenWord> ranked(std::vector<SeenWord> words) {
  rank_seen_words(words);
  return words;
}

std::vector<SeenWord> seen(const std::vector<std::uint32_t>& sightings) {
  SeenWords list;
  list.clear();
  std::for_each(sightings.rbegin(), sightings.rend(), [&](std::uint32_t word) { list.add(word, 1); });
  return {list.words().begin(), list.words().end()};
}

std::vector<SeenWord> listed_by_ngrex(const std::vector<std::uint32_t>& sightings) {
  ContextFolder folder;
  folder.clear(sightings.size());
  folder.take_wide(sightings);
  std::vector<SeenWord> words;
  for (const PartOfContext& part : folder.fold())
    words.push_back({part.tagged_lemma(), part.frequency()});
  return words;
}

TEST(SeenWordsTest, AreFromTheLastSeenToTheFirst) {
  EXPECT_EQ(seen({7, 8, 7, 9}), (std::vector<SeenWord>{{9, 1}, {7, 2}, {8, 1}}));
}

TEST(SeenWordsTest, OfEqualFrequenciesThatComesFirstWhichWasSeenLastFirst) {
  EXPECT_EQ(ranked(seen({1, 2, 3, 2, 1, 4})), (std::vector<SeenWord>{{2, 2}, {1, 2}, {3, 1}, {4, 1}}));
}

TEST(SeenWordsTest, PiecesMakeTheListOfNgrex) {
  test::Random random;
  SeenWords list;
  for (int round = 0; round < 300; ++round) {
    const std::uint32_t different = 1 + random.below(round % 3 == 0 ? 2000 : 12);
    std::vector<std::uint32_t> sightings(random.below(round % 10 == 0 ? 4000 : 60));
    for (std::uint32_t& word : sightings)
      word = random.below(different) * 0x1001;
    std::vector<std::vector<SeenWord>> pieces;
    for (auto begin = sightings.begin(); begin != sightings.end();) {
      const auto size = 1 + random.below(static_cast<std::uint32_t>(sightings.end() - begin));
      pieces.push_back(seen({begin, begin + size}));
      begin += size;
    }
    list.clear();
    std::for_each(pieces.rbegin(), pieces.rend(), [&](const std::vector<SeenWord>& piece) {
      for (const SeenWord& word : piece)
        list.add(word.word, word.count);
    });
    ASSERT_EQ(ranked({list.words().begin(), list.words().end()}), listed_by_ngrex(sightings));
  }
}

TEST(SeenWordsTest, AFrequencyStopsAtTheLargest) {
  SeenWords list;
  list.clear();
  list.add(1, largest - 2);
  list.add(1, 2);
  list.add(2, largest - 1);
  list.add(2, 2);
  list.add(3, largest);
  list.add(3, largest);
  for (const SeenWord& word : list.words())
    EXPECT_EQ(word.count, largest);
}

}  // namespace
}  // namespace colx::scale
