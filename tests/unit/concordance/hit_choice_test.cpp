#include "concordance/hit_choice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "tests/support/random.h"

namespace colx::concordance {
namespace {

constexpr std::uint64_t no_limit = std::numeric_limits<std::uint64_t>::max();

ExampleSettings choosing(std::optional<std::uint64_t> examples, bool first = false) {
  return {examples, first, ""};
}

Hit hit_at(std::size_t ngram, std::uint64_t begin, std::uint32_t words = 10, Position position = 1) {
  Hit hit;
  hit.ngram = ngram;
  hit.place = {0, static_cast<std::uint32_t>(begin), words, begin, begin + 1};
  hit.positions[0] = position;
  return hit;
}

struct Sighting {
  Hit hit;
  std::uint64_t sentence;
};

std::vector<Hit> chosen(HitChoice& choice, const std::vector<Sighting>& sightings) {
  for (const Sighting& sighting : sightings)
    if (!choice.is_full()) choice.add(sighting.hit, sighting.sentence);
  choice.finish();
  std::vector<Hit> hits;
  for (Hit hit; choice.next(hit);)
    hits.push_back(hit);
  return hits;
}

std::vector<Hit> chosen(const ExampleSettings& settings, const std::vector<Sighting>& sightings,
                        std::size_t ngrams = 1) {
  std::vector<ChoiceTerms> terms(ngrams);
  for (std::size_t i = 0; i < ngrams; ++i)
    terms[i] = {i, no_limit};
  const auto choice = make_choice(settings, terms, {0}, std::size_t{1} << 20);
  return chosen(*choice, sightings);
}

TEST(HitChoice, SentencesThatAreEasilyReadComeFirst) {
  const std::vector<Sighting> sightings = {{hit_at(0, 1, 5), 1},  {hit_at(0, 2, 6), 2},  {hit_at(0, 3, 25), 3},
                                           {hit_at(0, 4, 26), 4}, {hit_at(0, 5, 80), 5}, {hit_at(0, 6, 2), 6}};
  const std::vector<Hit> hits = chosen(choosing(3), sightings);
  ASSERT_EQ(hits.size(), 3U);
  EXPECT_EQ((std::set<std::uint64_t>{hits[0].place.begin, hits[1].place.begin}), (std::set<std::uint64_t>{2, 3}));
  EXPECT_EQ(chosen(choosing(100), sightings).size(), 6U);
}

TEST(HitChoice, NoSentenceComesTwiceWhileThereIsAnotherOne) {
  // The first sentence has the N-gram twice and stands twice in the corpus.
  const std::vector<Sighting> sightings = {{hit_at(0, 1, 10, 1), 7},
                                           {hit_at(0, 1, 10, 2), 7},
                                           {hit_at(0, 2, 10, 1), 7},
                                           {hit_at(0, 3, 90, 1), 8},
                                           {hit_at(0, 2, 10, 2), 7}};
  EXPECT_EQ(chosen(choosing(2), sightings), (std::vector<Hit>{hit_at(0, 1, 10, 1), hit_at(0, 3, 90, 1)}));
  EXPECT_EQ(chosen(choosing(4), sightings),
            (std::vector<Hit>{hit_at(0, 1, 10, 1), hit_at(0, 3, 90, 1), hit_at(0, 1, 10, 2), hit_at(0, 2, 10, 1)}));
}

TEST(HitChoice, OfEqualSentencesTheFirstByPathAndPlaceIsShown) {
  // Datafile 1 has the first path.
  const auto choice = make_choice(choosing(1), {{0, no_limit}}, {1, 0}, 1000);
  Hit in_first = hit_at(0, 4);
  Hit in_second = hit_at(0, 9);
  in_second.place.datafile = 1;
  EXPECT_EQ(chosen(*choice, {{in_first, 5}, {in_second, 5}}), std::vector<Hit>{in_second});
}

TEST(HitChoice, TheFirstOnesAreEnoughWhenAllThatThereAreWereTaken) {
  // Of the second N-gram there is one only, of the third none.
  const auto choice = make_choice(choosing(2, true), {{0, 5}, {0, 1}, {0, 0}}, {0}, 1000);
  choice->add(hit_at(0, 1), 1);
  choice->add(hit_at(1, 1), 1);
  EXPECT_FALSE(choice->is_full());
  choice->add(hit_at(0, 2), 2);
  EXPECT_TRUE(choice->is_full());
  choice->finish();
  std::vector<Hit> hits;
  for (Hit hit; choice->next(hit);)
    hits.push_back(hit);
  EXPECT_EQ(hits, (std::vector<Hit>{hit_at(0, 1), hit_at(0, 2), hit_at(1, 1)}));
}

TEST(HitChoice, AllAreKeptInTheOrderOfTheCorpusHoweverLittleMemoryThereIs) {
  std::vector<Sighting> sightings;
  for (std::uint64_t begin = 0; begin < 5000; ++begin)
    for (const Position position : {Position{3}, Position{1}})
      sightings.push_back({hit_at(begin % 3, begin, 10, position), begin});
  const auto choice = make_choice(choosing(std::nullopt), std::vector<ChoiceTerms>(3), {0}, 1000);
  const std::vector<Hit> hits = chosen(*choice, sightings);
  ASSERT_EQ(hits.size(), 10000U);
  // By number and place; in a sentence as they were added.
  std::vector<Hit> expected;
  for (std::size_t ngram = 0; ngram < 3; ++ngram)
    for (const Sighting& sighting : sightings)
      if (sighting.hit.ngram == ngram) expected.push_back(sighting.hit);
  EXPECT_EQ(hits, expected);
}

// The definition: sort all sentences, then all others, and cut.
std::vector<Hit> sorted_choice(std::uint64_t each, std::vector<Sighting> sightings) {
  // A choice of all there are tells in which order sentences come.
  std::vector<Hit> hits = chosen(choosing(sightings.size() + 1), sightings);
  hits.resize(std::min<std::size_t>(hits.size(), each));
  return hits;
}

TEST(HitChoice, TheOrderInWhichHitsComeDoesNotMatter) {
  auto random = test::Random();
  for (int i = 0; i < 2000; ++i) {
    std::vector<Sighting> sightings;
    const std::uint32_t count = random.below(30);
    for (std::uint32_t k = 0; k < count; ++k) {
      const std::uint32_t begin = random.below(12);
      sightings.push_back(
          {hit_at(0, begin, 10 + begin % 2 * 20, static_cast<Position>(1 + random.below(3))), begin / 2});
    }
    const std::uint64_t each = 1 + random.below(8);
    const std::vector<Hit> hits = chosen(choosing(each), sightings);
    EXPECT_EQ(hits, sorted_choice(each, sightings));
    for (std::size_t k = sightings.size(); k > 1; --k)
      std::swap(sightings[k - 1], sightings[random.below(static_cast<std::uint32_t>(k))]);
    EXPECT_EQ(chosen(choosing(each), sightings), hits);
  }
}

}  // namespace
}  // namespace colx::concordance
