// The members of an occurrence, from a sentence and positions.

#include "extraction/occurrence_members.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "tests/support/records.h"

namespace colx {
namespace {

using Members = std::vector<NGram::Member>;
using PlacesOfParents = std::vector<std::uint16_t>;

// A sentence of words with these parents; lemma and tag of each are its position, its relation is "Atr".
class Sentence {
 public:
  explicit Sentence(const PlacesOfParents& parents) {
    const std::uint8_t attribute = test::relation("Atr");
    for (const std::uint16_t parent : parents) {
      const auto order = static_cast<std::uint16_t>(_words.size() + 1);
      _words.push_back({order, static_cast<std::uint8_t>(order), order, parent, attribute});
    }
  }

  Members members(const std::vector<Position>& positions) const {
    Members members(positions.size());
    occurrence_members({_words.data(), _words.data() + _words.size()}, positions, members);
    return members;
  }

 private:
  std::vector<Word> _words;
};

// What a member should be.
NGram::Member member(std::uint8_t position, std::uint8_t parent) {
  return NGram::Member(position, position, parent, parent == 0 ? dependency::head : test::relation("Atr"));
}

TEST(OccurrenceMembers, ParentsArePlacesAmongThePositions) {
  const Sentence sentence({3, 0, 2, 3});
  EXPECT_EQ(sentence.members({1, 3, 4}), (Members{member(1, 2), member(3, 0), member(4, 2)}));
  EXPECT_EQ(sentence.members({2, 3}), (Members{member(2, 0), member(3, 1)}));
}

TEST(OccurrenceMembers, AMemberWhoseParentIsNotAmongThemIsAHead) {
  const Sentence sentence({2, 0, 2, 77});
  EXPECT_EQ(sentence.members({1, 3}), (Members{member(1, 0), member(3, 0)}));
  EXPECT_EQ(sentence.members({4}), (Members{member(4, 0)}));
}

TEST(OccurrenceMembers, AWordMayBeItsOwnParent) {
  EXPECT_EQ(Sentence({1, 1}).members({1, 2}), (Members{member(1, 1), member(2, 1)}));
}

TEST(OccurrenceMembers, SevenPositionsFarApart) {
  PlacesOfParents parents(60000, 1);
  parents[59999] = 30000;
  const Members members = Sentence(parents).members({1, 2, 3, 4, 5, 30000, 60000});
  EXPECT_EQ(members[6].parent(), 6);
  EXPECT_EQ(members[5].parent(), 1);
  EXPECT_EQ(members[6].lemma(), 60000U);
}

TEST(OccurrenceMembers, KeepsTheLowest24BitsOfALemma) {
  const std::array<Word, 1> words = {Word{0x1000005, 9, 1, 0, test::relation("Sb")}};
  const std::vector<Position> positions = {1};
  Members members(1);
  occurrence_members({words.data(), words.data() + 1}, positions, members);
  EXPECT_EQ(members[0], NGram::Member(5, 9, 0, dependency::head));
}

}  // namespace
}  // namespace colx
