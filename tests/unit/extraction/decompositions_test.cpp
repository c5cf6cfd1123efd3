// Ordered decompositions of a sum, against the plain recursive definition of all tuples.

#include "extraction/decompositions.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "tests/reference/plain_decompositions.h"
#include "tests/support/random.h"

namespace colx {
namespace {

using reference::Tuple;
using Tuples = std::vector<Tuple>;
using Limits = std::vector<std::uint32_t>;  // by child: the most that it can take

// What the program lists, zeros filled in.
Tuples listed(unsigned sum, const Limits& limits) {
  std::vector<std::uint32_t> capacities = {0};
  for (const std::uint32_t limit : limits)
    capacities.push_back(capacities.back() + limit);
  Tuples tuples;
  SumDecompositions().for_each(sum, capacities, [&](std::span<const Share> shares) {
    Tuple tuple(limits.size(), 0);
    std::size_t children = limits.size();
    for (const Share& share : shares) {
      ASSERT_LT(share.child, children) << "shares do not descend by child";
      EXPECT_GT(share.size, 0U);
      tuple[share.child] = share.size;
      children = share.child;
    }
    tuples.push_back(tuple);
  });
  return tuples;
}

// As many children, each of which can take all.
Tuples listed(unsigned sum, unsigned parts) {
  return listed(sum, Limits(parts, sum));
}

// The plain list without the tuples that hold a share beyond its limit.
Tuples defined(unsigned sum, const Limits& limits) {
  Tuples all;
  reference::plain_decompositions(sum, static_cast<unsigned>(limits.size()), all);
  std::erase_if(all, [&](const Tuple& tuple) {
    for (std::size_t c = 0; c < tuple.size(); ++c) {
      if (tuple[c] > limits[c]) return true;
    }
    return false;
  });
  return all;
}

TEST(SumDecompositionsTest, TheLastPartVariesSlowest) {
  EXPECT_EQ(listed(2, 2U), (Tuples{{2, 0}, {1, 1}, {0, 2}}));
  EXPECT_EQ(listed(1, 3U), (Tuples{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}));
  EXPECT_EQ(listed(2, 3U), (Tuples{{2, 0, 0}, {1, 1, 0}, {0, 2, 0}, {1, 0, 1}, {0, 1, 1}, {0, 0, 2}}));
}

TEST(SumDecompositionsTest, OnePartTakesAll) {
  EXPECT_EQ(listed(5, 1U), (Tuples{{5}}));
}

TEST(SumDecompositionsTest, NobodyToTakeItGivesNone) {
  EXPECT_TRUE(listed(3, 0U).empty());
  EXPECT_TRUE(listed(3, Limits{1, 0, 1}).empty());
}

TEST(SumDecompositionsTest, ListsWhatTheDefinitionListsForAllSmallSumsAndParts) {
  for (unsigned sum = 1; sum <= 6; ++sum) {
    for (unsigned parts = 1; parts <= 7; ++parts)
      ASSERT_EQ(listed(sum, parts), defined(sum, Limits(parts, sum))) << sum << " into " << parts;
  }
}

TEST(SumDecompositionsTest, ListsWhatTheDefinitionListsForAllLimitsOfUpToFiveChildren) {
  for (unsigned sum = 1; sum <= 6; ++sum) {
    for (unsigned parts = 1; parts <= (sum <= 4 ? 5U : 4U); ++parts) {
      Limits limits(parts, 0);
      std::size_t child = 0;
      do {
        ASSERT_EQ(listed(sum, limits), defined(sum, limits)) << sum << " into " << ::testing::PrintToString(limits);
        for (child = 0; child < parts && limits[child] == sum; ++child)
          limits[child] = 0;
        if (child < parts) ++limits[child];
      } while (child < parts);
    }
  }
}

TEST(SumDecompositionsTest, ListsWhatTheDefinitionListsForRandomLimits) {
  test::Random random;
  for (int round = 0; round < 1000; ++round) {
    const unsigned sum = 1 + random.below(6);
    Limits limits(1 + random.below(8));
    for (std::uint32_t& limit : limits)
      limit = random.below(9);
    ASSERT_EQ(listed(sum, limits), defined(sum, limits)) << sum << " into " << ::testing::PrintToString(limits);
  }
}

TEST(SumDecompositionsTest, ManyChildrenOfWhichFewCanTakeAnything) {
  // Of 2000 children all but three can take nothing.
  Limits limits(2000, 0);
  limits[7] = 2;
  limits[1500] = limits[1999] = 1;
  Tuple first(2000, 0), second(2000, 0), third(2000, 0);
  first[7] = 2;
  first[1500] = 1;
  second[7] = 2;
  second[1999] = 1;
  third[7] = third[1500] = third[1999] = 1;
  EXPECT_EQ(listed(3, limits), (Tuples{first, second, third}));
}

}  // namespace
}  // namespace colx
