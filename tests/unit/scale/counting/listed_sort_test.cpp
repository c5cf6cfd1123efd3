// Sorting by the listing, against the order that is worked out for a whole table.

#include "scale/counting/listed_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "model/listed_order.h"
#include "tests/support/random.h"

namespace colx::scale {
namespace {

TEST(ListedSortTest, IsTheOrderOfTheWholeTable) {
  test::Random random;
  for (int round = 0; round < 30; ++round) {
    const std::uint32_t count = 1 + random.below(round % 5 == 0 ? 20000 : 900);
    Listing listing(count);
    listing.set_growing_records(listing.growing_records());
    ZeroedArray<std::uint32_t> hashes(count);
    std::vector<ListedEntry> entries;
    for (std::uint32_t i = 0; i < count; ++i) {
      hashes[i] = random.below(round % 2 == 0 ? 50 : 1000000);
      entries.push_back({i, i * 10ULL, hashes[i], listing.bucket(hashes[i])});
    }
    std::shuffle(entries.begin(), entries.end(), random.engine());
    std::vector<std::uint32_t> order;
    for (const ListedEntry& entry : sorted_by_listing(entries, listing)) {
      ASSERT_EQ(entry.begin, entry.first * 10);
      order.push_back(static_cast<std::uint32_t>(entry.first));
    }
    const ZeroedArray<std::uint32_t> expected = listed_order(hashes);
    ASSERT_TRUE(std::equal(order.begin(), order.end(), expected.begin(), expected.end()));
  }
}

TEST(ListedSortTest, NothingIsInOrder) {
  EXPECT_TRUE(sorted_by_listing({}, Listing(1)).empty());
}

}  // namespace
}  // namespace colx::scale
