// Bump allocation from blocks: which block serves a request, what is reused, what a failure leaves behind.

#include "util/pool.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <random>
#include <utility>
#include <vector>

namespace colx {
namespace {

// A pool that counts its blocks and can be told that there is no memory left.
class ObservedPool : public VoidPool {
 public:
  using VoidPool::VoidPool;

  std::unique_ptr<MemoryBlock<char>> create_new_block() override {
    if (exhausted) throw std::bad_alloc();
    ++blocks;
    return VoidPool::create_new_block();
  }

  int blocks = 0;
  bool exhausted = false;
};

TEST(PoolTest, TakesNoMemoryBeforeTheFirstRequest) {
  const ObservedPool pool(100);
  EXPECT_EQ(pool.blocks, 0);
}

TEST(PoolTest, WithBlocksOfSizeZeroRefusesEveryRequestAndNeverAllocates) {
  ObservedPool pool(0);
  EXPECT_EQ(pool.get_memory(1), nullptr);
  EXPECT_EQ(pool.get_memory(100), nullptr);
  EXPECT_EQ(pool.get_raw_memory(4), nullptr);
  EXPECT_EQ(pool.blocks, 0);
}

TEST(PoolTest, RefusesARequestLargerThanABlock) {
  ObservedPool pool(100);
  EXPECT_EQ(pool.get_memory(101), nullptr);
  EXPECT_EQ(pool.blocks, 0);
  EXPECT_NE(pool.get_memory(100), nullptr);
}

TEST(PoolTest, AddressesAdvanceByExactlyTheSizesRequested) {
  ObservedPool pool(100);
  char* const first = pool.get_memory(3);
  EXPECT_EQ(pool.get_memory(7), first + 3);
  EXPECT_EQ(pool.get_raw_memory(1), first + 10);
  EXPECT_EQ(pool.get_memory(89), first + 11);
  EXPECT_EQ(pool.blocks, 1);
}

TEST(PoolTest, ARequestOfTheWholeBlockTakesANewBlockEachTime) {
  ObservedPool pool(100);
  EXPECT_NE(pool.get_memory(100), nullptr);
  EXPECT_EQ(pool.blocks, 1);
  // The full block is filed with nothing free and can serve nothing more.
  char* const next = pool.get_memory(1);
  EXPECT_EQ(pool.blocks, 2);
  EXPECT_EQ(pool.get_memory(99), next + 1);
  EXPECT_NE(pool.get_memory(1), nullptr);
  EXPECT_EQ(pool.blocks, 3);
}

TEST(PoolTest, ReusesTheTailThatFitsBest) {
  ObservedPool pool(100);
  char* const a = pool.get_memory(60);  // A has 40 left
  char* const b = pool.get_memory(60);  // B has 40 left, A is filed under 40
  EXPECT_EQ(pool.blocks, 2);
  EXPECT_EQ(pool.get_memory(30), b + 60);  // B has 10 left
  EXPECT_EQ(pool.get_memory(40), a + 60);  // from A, which is full now; B is filed under 10
  char* const c = pool.get_memory(45);     // 10 is not enough: a third block, A is filed under 0
  EXPECT_EQ(pool.blocks, 3);
  EXPECT_EQ(pool.get_memory(55), c + 45);  // the third block is current and is full now
  EXPECT_EQ(pool.get_memory(10), b + 90);  // B was filed under 10
  EXPECT_NE(pool.get_memory(1), nullptr);  // A and the third block are filed under 0
  EXPECT_EQ(pool.blocks, 4);
}

TEST(PoolTest, AmongEqualTailsTakesTheOneFiledFirst) {
  ObservedPool pool(100);
  char* const a = pool.get_memory(60);
  char* const b = pool.get_memory(60);
  char* const c = pool.get_memory(60);
  EXPECT_NE(pool.get_memory(100), nullptr);  // A, B and C are filed under 40, in this order
  EXPECT_EQ(pool.get_memory(35), a + 60);
  EXPECT_EQ(pool.get_memory(35), b + 60);
  EXPECT_EQ(pool.get_memory(35), c + 60);
  EXPECT_EQ(pool.blocks, 4);
}

TEST(PoolTest, ClearReleasesFiledBlocksAndLeavesTheCurrentOne) {
  ObservedPool pool(100);
  EXPECT_NE(pool.get_memory(60), nullptr);
  char* const current = pool.get_memory(70);
  pool.clear();
  EXPECT_EQ(pool.get_memory(10), current + 70);
  EXPECT_NE(pool.get_memory(40), nullptr);  // the tail of 40 is gone
  EXPECT_EQ(pool.blocks, 3);
}

TEST(PoolTest, ExhaustedMemoryLeavesTheCurrentBlockCurrent) {
  ObservedPool pool(100);
  pool.exhausted = true;
  EXPECT_THROW(pool.get_memory(10), std::bad_alloc);
  pool.exhausted = false;
  char* const a = pool.get_memory(60);
  pool.exhausted = true;
  EXPECT_THROW(pool.get_memory(60), std::bad_alloc);
  EXPECT_EQ(pool.get_memory(15), a + 60);
  EXPECT_EQ(pool.get_memory(25), a + 75);
  EXPECT_THROW(pool.get_memory(1), std::bad_alloc);
  pool.exhausted = false;
  EXPECT_NE(pool.get_memory(1), nullptr);
  EXPECT_EQ(pool.blocks, 2);
}

TEST(PoolTest, GivesEveryRequestMemoryOfItsOwn) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    RandomSizedMemoryPool<char> pool(200);
    std::vector<std::pair<char*, std::size_t>> given;
    for (unsigned i = 0; i < 1000; ++i) {
      const std::size_t size = 1 + random() % 200;
      char* const memory = pool.get_memory(size);
      ASSERT_NE(memory, nullptr);
      std::memset(memory, static_cast<int>(i % 251), size);
      given.emplace_back(memory, size);
    }
    for (unsigned i = 0; i < given.size(); ++i) {
      const std::vector<char> expected(given[i].second, static_cast<char>(i % 251));
      ASSERT_EQ(std::memcmp(given[i].first, expected.data(), expected.size()), 0) << "request " << i;
    }
  }
}

}  // namespace
}  // namespace colx
