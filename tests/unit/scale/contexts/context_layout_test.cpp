// How the work on contexts is cut up.

#include "scale/contexts/context_layout.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "tests/support/random.h"

namespace colx::scale {
namespace {

// Types 1 to 3; the full one has cells 0 to 3, the others one each.
ContextLayout layout_of_pairs() {
  ContextLayout layout;
  layout.first_cells = {0, 5, 4, 0};
  layout.cells = 6;
  layout.bits = 1;
  layout.merges = {{0, 1}, {1, 3}, {3, 6}};
  return layout;
}

TEST(ContextLayoutTest, CellsFollowOneAnotherAsTheBucketsOfTheListingDo) {
  const ContextLayout layout = layout_of_pairs();
  std::size_t cell = 0;
  for (std::uint32_t bucket = 0; bucket < 193; ++bucket) {
    const std::size_t next = layout.cell_of(3, bucket, 193);
    ASSERT_TRUE(next == cell || next == cell + 1);
    cell = next;
  }
  EXPECT_EQ(cell, layout.end_cell(3) - 1);
  EXPECT_EQ(layout.cell_of(2, 192, 193), 4U);
  EXPECT_EQ(layout.cell_of(1, 0, 193), 5U);
  EXPECT_EQ(layout.end_cell(1), layout.cells);
}

TEST(ContextLayoutTest, ATypeIsMergedByAllTasksThatHaveBucketsOfIt) {
  const ContextLayout layout = layout_of_pairs();
  EXPECT_EQ(layout.merges_of(1), (std::vector<std::size_t>{0, 1}));
  EXPECT_EQ(layout.merges_of(2), (std::vector<std::size_t>{1, 2}));
  EXPECT_EQ(layout.merges_of(3), (std::vector<std::size_t>{2}));
  EXPECT_EQ(layout.first_type(1), 1);
  EXPECT_EQ(layout.last_type(1), 2);
}

TEST(ContextLayoutTest, PartsHoldAllCellsAndAsManyBytesAsThereMayBe) {
  test::Random random;
  for (int round = 0; round < 100; ++round) {
    std::vector<std::uint64_t> bytes(1 + random.below(30));
    for (std::uint64_t& size : bytes)
      size = random.below(100);
    std::size_t cell = 0;
    for (const ContextPart& part : context_parts(bytes, 150)) {
      ASSERT_EQ(part.first_cell, cell);
      ASSERT_LT(cell, part.end_cell);
      std::uint64_t held = 0;
      for (; cell < part.end_cell; ++cell)
        held += bytes[cell];
      ASSERT_LE(held, 150U);
      ASSERT_TRUE(cell == bytes.size() || held + bytes[cell] > 150);
    }
    ASSERT_EQ(cell, bytes.size());
  }
}

}  // namespace
}  // namespace colx::scale
