// The pieces of a dependency tree: by hand, exhaustively against the literal definition, and on extreme trees.

#include "extraction/ntree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "corpus/word.h"
#include "tests/reference/plain_subtrees.h"

namespace colx {
namespace {

using Parents = std::vector<unsigned>;  // entry 0 stands for the pseudo-word above the sentence
using Listed = std::vector<std::pair<unsigned, std::vector<unsigned>>>;

// The pieces of n words in the order in which they are extracted, each with its top word.
Listed pieces(const Parents& parents, unsigned n) {
  static SubtreeEnumerator enumerator;  // as in the program, used for one tree after another
  static NTree tree;
  std::vector<Word> words;
  for (std::size_t i = 1; i < parents.size(); ++i)
    words.push_back({0, 0, static_cast<std::uint16_t>(i), static_cast<std::uint16_t>(parents[i]), 0});
  tree.build({words.data(), words.data() + words.size()});
  EXPECT_EQ(tree.size(), words.size());
  Listed found;
  enumerator.extract_subtrees(tree, n, [&](std::span<const Position> piece) {
    const auto is_top = [&](Position position) {
      return std::find(piece.begin(), piece.end(), parents[position]) == piece.end();
    };
    found.emplace_back(*std::find_if(piece.begin(), piece.end(), is_top),
                       std::vector<unsigned>(piece.begin(), piece.end()));
  });
  return found;
}

Listed defined(const Parents& parents, unsigned n) {
  const reference::PlainPieces found = reference::plain_subtrees(parents, n);
  return {found.begin(), found.end()};
}

// Steps to the next vector of parents from 0 to `largest`; false after the last.
bool next_parents(Parents& parents, unsigned largest) {
  for (std::size_t i = 1; i < parents.size(); ++i) {
    if (parents[i]++ < largest) return true;
    parents[i] = 0;
  }
  return false;
}

TEST(SubtreesTest, ASentenceOfFewerThanNWordsHasNone) {
  EXPECT_TRUE(pieces({0}, 2).empty());
  EXPECT_TRUE(pieces({0, 0}, 2).empty());
  EXPECT_TRUE(pieces({0, 0, 1}, 3).empty());
  EXPECT_EQ(pieces({0, 0, 1}, 2), (Listed{{1, {1, 2}}}));
}

TEST(SubtreesTest, AChainGivesItsLinks) {
  EXPECT_EQ(pieces({0, 0, 1, 2}, 2), (Listed{{1, {1, 2}}, {2, {2, 3}}}));
  EXPECT_EQ(pieces({0, 0, 1, 2}, 3), (Listed{{1, {1, 2, 3}}}));
}

TEST(SubtreesTest, TwoChildrenComeInOrderOfTheirDecompositions) {
  EXPECT_EQ(pieces({0, 0, 1, 1}, 3), (Listed{{1, {1, 2, 3}}}));
  EXPECT_EQ(pieces({0, 0, 1, 1}, 2), (Listed{{1, {1, 2}}, {1, {1, 3}}}));
}

TEST(SubtreesTest, PositionsAscendWhereverTheTopStands) {
  // 2 is the top of 1 and 3; 3 of 4.
  EXPECT_EQ(pieces({0, 2, 0, 2, 3}, 3), (Listed{{2, {1, 2, 3}}, {2, {2, 3, 4}}}));
}

TEST(SubtreesTest, PiecesNeverReachAcrossThePseudoWord) {
  EXPECT_EQ(pieces({0, 0, 1, 0, 3}, 2), (Listed{{1, {1, 2}}, {3, {3, 4}}}));
  EXPECT_TRUE(pieces({0, 0, 1, 0, 3}, 3).empty());
}

TEST(SubtreesTest, TwoListsOfTwoPiecesAreJoinedByBlocks) {
  // 1 has the children 2 and 3, 2 has 4 and 5, 3 has 6 and 7. For 5 words only the shares (2, 2) and (1, 3), (3, 1)
  // fit. Shares (2, 2): lists ({4,2}, {5,2}) and ({6,3}, {7,3}) give the first pair twice and the last pair twice, and
  // never 4 with 7 or 5 with 6. Order of the decompositions of 4: (3, 1), (2, 2), (1, 3).
  EXPECT_EQ(pieces({0, 0, 1, 1, 2, 2, 3, 3}, 5), (Listed{{1, {1, 2, 3, 4, 5}},
                                                         {1, {1, 2, 3, 4, 6}},
                                                         {1, {1, 2, 3, 4, 6}},
                                                         {1, {1, 2, 3, 5, 7}},
                                                         {1, {1, 2, 3, 5, 7}},
                                                         {1, {1, 2, 3, 6, 7}}}));
}

TEST(SubtreesTest, ListsOfDifferentLengthsAreJoinedByTheirOwnBlocks) {
  // 1 has the children 2 and 3, 2 has 4 and 5, 3 has 6, 7 and 8. Shares (2, 2) of 4 give six results: the list of 2 in
  // blocks of three, the list of 3 in blocks of two. Before them stands the one piece of shares (3, 1), after them the
  // three of shares (1, 3) and the one of (0, 4).
  EXPECT_EQ(pieces({0, 0, 1, 1, 2, 2, 3, 3, 3}, 5), (Listed{{1, {1, 2, 3, 4, 5}},
                                                            {1, {1, 2, 3, 4, 6}},
                                                            {1, {1, 2, 3, 4, 6}},
                                                            {1, {1, 2, 3, 4, 7}},
                                                            {1, {1, 2, 3, 5, 7}},
                                                            {1, {1, 2, 3, 5, 8}},
                                                            {1, {1, 2, 3, 5, 8}},
                                                            {1, {1, 2, 3, 6, 7}},
                                                            {1, {1, 2, 3, 6, 8}},
                                                            {1, {1, 2, 3, 7, 8}},
                                                            {1, {1, 3, 6, 7, 8}}}));
}

TEST(NTreeTest, ChildrenAscendAndParentsBeyondTheSentenceAreNone) {
  NTree tree;
  for (const std::vector<std::uint16_t>& parents :
       {std::vector<std::uint16_t>{3, 3, 0, 3, 9}, std::vector<std::uint16_t>{2, 1}, std::vector<std::uint16_t>{}}) {
    std::vector<Word> words;
    for (const std::uint16_t parent : parents)
      words.push_back({0, 0, 0, parent, 0});
    tree.build({words.data(), words.data() + words.size()});
    ASSERT_EQ(tree.size(), parents.size());
    for (std::size_t i = 1; i <= parents.size(); ++i) {
      EXPECT_EQ(tree.parent(i), parents[i - 1] <= parents.size() ? parents[i - 1] : 0);
      std::vector<Position> children;
      for (std::size_t c = 1; c <= parents.size(); ++c) {
        if (parents[c - 1] == i) children.push_back(static_cast<Position>(c));
      }
      const auto actual = tree.children(i);
      EXPECT_EQ(std::vector<Position>(actual.begin(), actual.end()), children);
    }
  }
}

TEST(SubtreesTest, AWordBelowAParentBeyondTheSentenceIsNobodysChild) {
  EXPECT_EQ(pieces({0, 0, 4, 2}, 2), (Listed{{2, {2, 3}}}));
  EXPECT_EQ(pieces({0, 65535, 1, 2}, 3), (Listed{{1, {1, 2, 3}}}));
}

TEST(SubtreesTest, CyclesYieldNothingButThePiecesBelowThem) {
  EXPECT_TRUE(pieces({0, 2, 1}, 2).empty());
  // 3 hangs in the cycle of 1 and 2 and has the children 4 and 5.
  EXPECT_EQ(pieces({0, 2, 1, 1, 3, 3}, 2), (Listed{{3, {3, 4}}, {3, {3, 5}}}));
  EXPECT_EQ(pieces({0, 2, 1, 1, 3, 3}, 3), (Listed{{3, {3, 4, 5}}}));
}

TEST(SubtreesTest, AWordThatIsItsOwnParentYieldsNothingButThePiecesBelowIt) {
  EXPECT_TRUE(pieces({0, 1, 1}, 2).empty());
  EXPECT_EQ(pieces({0, 1, 1, 2}, 2), (Listed{{2, {2, 3}}}));
}

TEST(SubtreesTest, FollowsTheDefinitionOnAllSentencesOfUpToSixWords) {
  for (unsigned words = 0; words <= 6; ++words) {
    const unsigned largest = words < 6 ? words + 1 : words;  // with a parent beyond the sentence where that is cheap
    Parents parents(words + 1, 0);
    do {
      for (unsigned n = 2; n <= words + 1; ++n)
        ASSERT_EQ(pieces(parents, n), defined(parents, n)) << ::testing::PrintToString(parents) << ", n " << n;
    } while (next_parents(parents, largest));
  }
}

TEST(SubtreesTest, FollowsTheDefinitionOnAllTreesOfSevenWordsBelowTheFirst) {
  Parents parents(8, 0);
  std::size_t word = 0;
  do {
    for (unsigned n = 2; n <= 7; ++n)
      ASSERT_EQ(pieces(parents, n), defined(parents, n)) << ::testing::PrintToString(parents) << ", n " << n;
    for (word = 2; word < parents.size() && parents[word] + 1 == word; ++word)
      parents[word] = 0;
    if (word < parents.size()) ++parents[word];
  } while (word < parents.size());
}

TEST(SubtreesTest, FollowsTheDefinitionOnRandomLargerTrees) {
  for (unsigned seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    Parents parents(8 + random() % 6, 0);
    // Parents close by make deep trees, parents from anywhere above make bushy ones.
    const std::size_t reach = 1 + random() % parents.size();
    for (std::size_t i = 2; i < parents.size(); ++i)
      parents[i] = static_cast<unsigned>(i - 1 - random() % std::min(i - 1, reach));
    // Half of the trees turned around, so that parents stand after their children.
    if (seed % 2 == 0) {
      Parents turned(parents.size(), 0);
      for (std::size_t i = 1; i < parents.size(); ++i)
        turned[parents.size() - i] = parents[i] == 0 ? 0 : static_cast<unsigned>(parents.size()) - parents[i];
      parents = turned;
    }
    for (unsigned n = 2; n <= 7; ++n)
      ASSERT_EQ(pieces(parents, n), defined(parents, n)) << ::testing::PrintToString(parents) << ", n " << n;
  }
}

TEST(SubtreesTest, AChainOfTheLongestSentenceFinishes) {
  Parents down(65536, 0), up(65536, 0);
  for (unsigned i = 1; i < 65536; ++i) {
    down[i] = i - 1;
    up[i] = (i + 1) % 65536;
  }
  for (const Parents& chain : {down, up}) {
    for (const unsigned n : {2U, 4U}) {
      const Listed found = pieces(chain, n);
      ASSERT_EQ(found.size(), 65536 - n);
      for (unsigned first = 1; first + n <= 65536; ++first) {
        ASSERT_EQ(found[first - 1].second.front(), first);
        ASSERT_EQ(found[first - 1].second.back(), first + n - 1);
      }
    }
  }
}

TEST(SubtreesTest, TheLongestSentenceUnderOneWordFinishes) {
  Parents star(65536, 32768);
  star[0] = star[32768] = 0;
  const Listed found = pieces(star, 2);
  ASSERT_EQ(found.size(), 65534U);
  EXPECT_EQ(found.front(), (Listed::value_type{32768, {1, 32768}}));
  EXPECT_EQ(found.back(), (Listed::value_type{32768, {32768, 65535}}));
}

TEST(SubtreesTest, AWideWordAmongLeavesAllowsLargePieces) {
  // 200 children of which two have a child: for 4 words C(200, 3) leaves-only pieces alone, more with the others.
  Parents parents(203, 1);
  parents[0] = parents[1] = 0;
  parents[201] = 2;
  parents[202] = 3;
  // Children are 2 to 200, 199 of them. Three shares of 1: C(199, 3) = 1293699. One share of 2 (two choices) with one
  // of 1 (198 others each): 396. No share of 3.
  EXPECT_EQ(pieces(parents, 4).size(), 1293699U + 396U);
}

}  // namespace
}  // namespace colx
