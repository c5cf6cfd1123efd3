// Shards cover every datafile once, in order, whatever their size.

#include "scale/engine/shard_cutter.h"

#include <gtest/gtest.h>

#include <random>

namespace colx::scale {
namespace {

std::vector<Datafile> datafiles_of(const std::vector<std::uint64_t>& sizes) {
  std::vector<Datafile> datafiles;
  for (const std::uint64_t size : sizes) {
    datafiles.emplace_back();
    datafiles.back().size = size;
  }
  return datafiles;
}

TEST(ShardCutterTest, CutsALargeDatafileInside) {
  const std::vector<Shard> expected{{0, 1, 0, 10, false}, {0, 1, 10, 20, false}, {0, 1, 20, 25, true}};
  EXPECT_EQ(cut_into_shards(datafiles_of({25}), 10, true, {}), expected);
}

TEST(ShardCutterTest, LeavesALargeDatafileWholeWhereItMustNotBeCut) {
  const std::vector<Shard> expected{{0, 1, 0, 25, true}};
  EXPECT_EQ(cut_into_shards(datafiles_of({25}), 10, false, {}), expected);
}

TEST(ShardCutterTest, PutsSmallDatafilesTogether) {
  const std::vector<Shard> expected{{0, 3, 0, 0, true}, {3, 2, 0, 0, true}};
  EXPECT_EQ(cut_into_shards(datafiles_of({4, 4, 2, 9, 1}), 10, true, {}), expected);
}

TEST(ShardCutterTest, LetsOldDatafilesThatHaveGrownStayTogether) {
  const std::vector<Shard> expected{{0, 2, 0, 0, true}, {2, 1, 0, 3, true}};
  EXPECT_EQ(cut_into_shards(datafiles_of({6, 8, 3}), 10, true, {0, 2}), expected);
}

TEST(ShardCutterTest, CoversEverythingOnce) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    std::vector<std::uint64_t> sizes(random() % 12);
    for (std::uint64_t& size : sizes)
      size = random() % (random() % 2 ? 8 : 60);
    std::set<std::size_t> starts;
    while (random() % 3 != 0)
      starts.insert(random() % (sizes.size() + 1));
    std::vector<std::uint64_t> covered(sizes.size(), 0);
    std::vector<bool> begun(sizes.size(), false);
    std::size_t next = 0;
    for (const Shard& shard : cut_into_shards(datafiles_of(sizes), 1 + random() % 20, random() % 2 == 0, starts)) {
      ASSERT_TRUE(shard.datafile == next || (shard.begin > 0 && shard.datafile + 1 == next)) << "round " << round;
      ASSERT_LE(shard.end_datafile(), sizes.size());
      begun[shard.datafile] = true;
      next = shard.end_datafile();
      if (shard.datafiles > 1) {
        for (std::size_t d = shard.datafile; d < next; ++d)
          covered[d] = sizes[d];
      } else {
        ASSERT_EQ(shard.begin, covered[shard.datafile]) << "round " << round;
        covered[shard.datafile] = shard.end;
        ASSERT_EQ(shard.is_last, shard.end == sizes[shard.datafile]) << "round " << round;
      }
    }
    EXPECT_EQ(next, sizes.size());
    EXPECT_EQ(covered, sizes) << "round " << round;
    for (const std::size_t start : starts)
      EXPECT_TRUE(start == sizes.size() || begun[start]) << "round " << round;
  }
}

}  // namespace
}  // namespace colx::scale
