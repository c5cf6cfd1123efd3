// What a plan takes for a corpus fits into the memory that there is, and a plan is outgrown only where that matters.

#include "scale/engine/plan_sizes.h"

#include <gtest/gtest.h>

#include "tests/support/settings_guard.h"

namespace colx::scale {
namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;
constexpr std::size_t gibibyte = std::size_t{1} << 30;

// Sizes depend on N.
struct PlanSizesTest : ::testing::Test {
  const test::SettingsGuard pairs{2};
};

TEST_F(PlanSizesTest, ShardsAreForEverybodyButNeitherTinyNorHuge) {
  EXPECT_EQ(usual_shard_size(1000, 2), mebibyte);
  EXPECT_EQ(usual_shard_size(40 * mebibyte, 2), 10 * mebibyte + 1);
  EXPECT_EQ(usual_shard_size(100 * gibibyte, 4), 256 * mebibyte);
}

TEST_F(PlanSizesTest, BucketsFitIntoHalfTheMemory) {
  for (const std::size_t memory : {std::size_t{64} << 10, mebibyte, 64 * mebibyte, gibibyte})
    for (std::uint64_t records = 1; records < (std::uint64_t{1} << 30); records *= 8) {
      const unsigned bits = usual_bucket_bits(records, memory, 1);
      const bool indexes_are_full = (std::uint64_t{16} << (bits + 1)) > memory / 8;
      EXPECT_TRUE((records >> bits) * 76 <= memory / 2 || indexes_are_full || bits == 18)
          << records << " in " << memory;
    }
}

TEST_F(PlanSizesTest, IndexesOfManyRunsLeaveFewerBuckets) {
  EXPECT_EQ(usual_bucket_bits(100'000'000, 64 * mebibyte, 1), 14U);
  EXPECT_EQ(usual_bucket_bits(100'000'000, 64 * mebibyte, 1000), 9U);
}

TEST_F(PlanSizesTest, EverybodyHasATaskAsLongAsThereAreBuckets) {
  EXPECT_EQ(usual_reduces(1000, gibibyte, 8, 4), 8U);
  EXPECT_EQ(usual_reduces(1000, gibibyte, 8, 2), 4U);
  EXPECT_EQ(usual_reduces(1000, gibibyte, 8, 0), 1U);
}

TEST_F(PlanSizesTest, APlanIsOutgrownByACorpusManyTimesAsLargeWhoseBucketsAreTooLarge) {
  EXPECT_TRUE(has_outgrown(16 * gibibyte, mebibyte, 256 * mebibyte, 3));
  EXPECT_TRUE(has_outgrown(gibibyte, 0, 256 * mebibyte, 0));
}

TEST_F(PlanSizesTest, APlanHoldsWhereCountingFromTheStartWouldCostMuch) {
  EXPECT_FALSE(has_outgrown(16 * gibibyte, 2 * gibibyte, 256 * mebibyte, 3));
}

TEST_F(PlanSizesTest, APlanHoldsWhereItsBucketsStillFit) {
  EXPECT_FALSE(has_outgrown(16 * mebibyte, 1000, 256 * mebibyte, 0));
  EXPECT_FALSE(has_outgrown(16 * gibibyte, mebibyte, 256 * mebibyte, 14));
}

}  // namespace
}  // namespace colx::scale
