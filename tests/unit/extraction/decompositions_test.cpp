// Ordered decompositions of a sum, against the plain recursive definition of all tuples.

#include "extraction/decompositions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <span>
#include <vector>

#include "tests/reference/plain_decompositions.h"

namespace colx {
namespace {

using reference::Tuple;
using Tuples = std::vector<Tuple>;
using Admits = std::function<bool(unsigned child, unsigned size)>;

bool everything(unsigned, unsigned) {
  return true;
}

// What the program lists, zeros filled in.
Tuples listed(unsigned sum, unsigned parts, const Admits& admits) {
  Tuples tuples;
  SumDecompositions().for_each(sum, parts, admits, [&](std::span<const Share> shares) {
    Tuple tuple(parts, 0);
    std::uint32_t next_child = 0;
    for (const Share& share : shares) {
      EXPECT_GE(share.child, next_child) << "shares do not ascend by child";
      EXPECT_GT(share.size, 0U);
      ASSERT_LT(share.child, parts);
      tuple[share.child] = share.size;
      next_child = share.child + 1;
    }
    tuples.push_back(tuple);
  });
  return tuples;
}

// The plain list without the tuples that hold a share that is not admitted.
Tuples defined(unsigned sum, unsigned parts, const Admits& admits) {
  Tuples all;
  reference::plain_decompositions(sum, parts, all);
  std::erase_if(all, [&](const Tuple& tuple) {
    for (unsigned c = 0; c < tuple.size(); ++c) {
      if (tuple[c] > 0 && !admits(c, tuple[c])) return true;
    }
    return false;
  });
  return all;
}

TEST(SumDecompositionsTest, TheLastPartVariesSlowest) {
  EXPECT_EQ(listed(2, 2, everything), (Tuples{{2, 0}, {1, 1}, {0, 2}}));
  EXPECT_EQ(listed(1, 3, everything), (Tuples{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}));
  EXPECT_EQ(listed(2, 3, everything), (Tuples{{2, 0, 0}, {1, 1, 0}, {0, 2, 0}, {1, 0, 1}, {0, 1, 1}, {0, 0, 2}}));
}

TEST(SumDecompositionsTest, OnePartTakesAll) {
  EXPECT_EQ(listed(5, 1, everything), (Tuples{{5}}));
}

TEST(SumDecompositionsTest, NothingToDistributeOrNobodyToTakeItGivesNone) {
  EXPECT_TRUE(listed(0, 3, everything).empty());
  EXPECT_TRUE(listed(3, 0, everything).empty());
  EXPECT_TRUE(listed(0, 0, everything).empty());
}

TEST(SumDecompositionsTest, ListsWhatTheDefinitionListsForAllSmallSumsAndParts) {
  for (unsigned sum = 1; sum <= 6; ++sum) {
    for (unsigned parts = 1; parts <= 7; ++parts)
      ASSERT_EQ(listed(sum, parts, everything), defined(sum, parts, everything)) << sum << " into " << parts;
  }
}

TEST(SumDecompositionsTest, SharesThatAreNotAdmittedLeaveTheOthersInOrder) {
  for (unsigned seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const unsigned sum = 1 + static_cast<unsigned>(random() % 6);
    const unsigned parts = 1 + static_cast<unsigned>(random() % 8);
    const unsigned percent = static_cast<unsigned>(random() % 101);
    std::vector<std::vector<bool>> admitted(parts, std::vector<bool>(sum + 1));
    for (auto& child : admitted) {
      for (auto&& share : child)
        share = random() % 100 < percent;
    }
    const Admits admits = [&](unsigned child, unsigned size) { return admitted.at(child).at(size); };
    ASSERT_EQ(listed(sum, parts, admits), defined(sum, parts, admits)) << sum << " into " << parts;
  }
}

TEST(SumDecompositionsTest, ManyChildrenOfWhichFewCanTakeMoreThanOne) {
  // A word with 2000 children, all leaves but two. 3 into shares of 1 would be more than 10^9; only the two may share.
  const auto admits = [](unsigned child, unsigned size) {
    return (child == 7 && size == 2) || (child == 1500 && size == 1) || (child == 1999 && size == 1);
  };
  Tuple first(2000, 0), second(2000, 0);
  first[7] = 2;
  first[1500] = 1;
  second[7] = 2;
  second[1999] = 1;
  EXPECT_EQ(listed(3, 2000, admits), (Tuples{first, second}));
}

}  // namespace
}  // namespace colx
