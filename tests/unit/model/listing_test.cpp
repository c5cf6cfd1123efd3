// The order of records as a relation between two of them, against the chained table that defines it and against the
// order that is worked out for a whole table.

#include "model/listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#include "model/listed_order.h"
#include "tests/reference/chained_table.h"
#include "tests/support/random.h"

namespace colx {
namespace {

using Numbers = std::vector<std::size_t>;

// The records sorted by the relation; record i was first seen at moment 3 i + 5.
Numbers sorted_by_relation(const std::vector<std::uint32_t>& hashes, test::Random& random) {
  const auto seen = [](std::uint64_t number) { return 3 * number + 5; };
  Listing listing(hashes.size());
  std::vector<std::uint64_t> moments;
  for (const std::uint64_t number : listing.growing_records())
    moments.push_back(seen(number));
  listing.set_growing_records(moments);
  Numbers order(hashes.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::shuffle(order.begin(), order.end(), random.engine());
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return listing.before({hashes[a], seen(a)}, {hashes[b], seen(b)});
  });
  return order;
}

TEST(ListingTest, IsTheOrderOfTheChainedTableAndOfTheWholeTable) {
  test::Random random;
  for (int round = 0; round < 60; ++round) {
    const std::size_t count = 1 + random.below(round % 10 == 0 ? 30000 : 2000);
    const std::uint32_t different = 1 + random.below(round % 3 == 0 ? 10 : 100000);
    const auto spread = random.once_in(2) ? 1U : static_cast<std::uint32_t>(random.engine()()) | 1U;
    std::vector<std::uint32_t> hashes(count);
    ZeroedArray<std::uint32_t> weak_hashes(count);
    reference::ChainedTable table;
    for (std::size_t i = 0; i < count; ++i) {
      hashes[i] = weak_hashes[i] = random.below(different) * spread;
      table.insert(hashes[i], i);
    }
    const Numbers order = sorted_by_relation(hashes, random);
    ASSERT_EQ(order, table.order());
    const ZeroedArray<std::uint32_t> listed = listed_order(weak_hashes);
    ASSERT_TRUE(std::equal(order.begin(), order.end(), listed.begin(), listed.end()));
  }
}

TEST(ListingTest, ATableGrowsWithTheRecordThatItHasNoBucketFor) {
  EXPECT_EQ(Listing(193).buckets(), 193U);
  EXPECT_TRUE(Listing(193).growing_records().empty());
  EXPECT_EQ(Listing(194).buckets(), 389U);
  EXPECT_EQ(Listing(194).growing_records(), (std::vector<std::uint64_t>{193}));
  EXPECT_EQ(Listing(1000).growing_records(), (std::vector<std::uint64_t>{193, 389, 769}));
}

}  // namespace
}  // namespace colx
