#include "util/array_pool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "tests/support/random.h"

namespace colx {
namespace {

TEST(ArrayPoolTest, CapacitiesAreTheSmallestOfTheirClassAndWasteLittle) {
  std::size_t before = 0;
  for (std::size_t size = 1; size <= 200000; ++size) {
    const std::size_t capacity = ArrayPool::capacity_for(size);
    ASSERT_GE(capacity, size);
    ASSERT_EQ(ArrayPool::capacity_for(capacity), capacity) << "a capacity is its own class";
    ASSERT_TRUE(capacity == before || before + 1 == size) << size << " skips a class";
    ASSERT_LE(capacity - size, size < 4 ? 3 : size / 8) << size;
    before = capacity;
  }
}

TEST(ArrayPoolTest, CapacitiesOfLargeArraysAreRightToo) {
  for (unsigned bits = 18; bits < 33; ++bits) {
    for (std::size_t part = 8; part < 16; ++part) {
      const std::size_t capacity = part << (bits - 3);
      ASSERT_EQ(ArrayPool::capacity_for(capacity), capacity);
      ASSERT_EQ(ArrayPool::capacity_for(capacity + 1), (part + 1) << (bits - 3));
    }
  }
}

TEST(ArrayPoolTest, AnArrayThatIsGivenBackServesTheNextRequestOfItsClass) {
  ArrayPool pool;
  const std::size_t capacity = ArrayPool::capacity_for(100);
  std::uint32_t* const first = pool.take(capacity);
  std::uint32_t* const second = pool.take(capacity);
  pool.give_back(first, capacity);
  EXPECT_NE(pool.take(ArrayPool::capacity_for(50)), first);
  EXPECT_EQ(pool.take(capacity), first);
  pool.give_back(first, capacity);
  pool.give_back(second, capacity);
  EXPECT_EQ(pool.take(capacity), second);
  EXPECT_EQ(pool.take(capacity), first);
  EXPECT_NE(pool.take(capacity), first);
}

TEST(ArrayPoolTest, GivesEveryRequestMemoryOfItsOwn) {
  test::Random random;
  struct Taken {
    std::uint32_t* array;
    std::size_t capacity;
    std::uint32_t mark;
  };
  ArrayPool pool;
  std::vector<Taken> taken;
  const auto expect_untouched = [](const Taken& one) {
    ASSERT_EQ(std::count(one.array, one.array + one.capacity, one.mark), static_cast<std::ptrdiff_t>(one.capacity));
  };
  for (std::uint32_t i = 0; i < 20000 && !::testing::Test::HasFatalFailure(); ++i) {
    if (!taken.empty() && !random.once_in(3)) {
      std::swap(taken[random.below(static_cast<std::uint32_t>(taken.size()))], taken.back());
      expect_untouched(taken.back());
      pool.give_back(taken.back().array, taken.back().capacity);
      taken.pop_back();
      continue;
    }
    for (std::uint32_t more = random.below(4); more > 0; --more) {
      const std::size_t capacity = ArrayPool::capacity_for(1 + random.below(random.once_in(100) ? 100000
                                                                            : random.once_in(9) ? 5000
                                                                                                : 40));
      taken.push_back({pool.take(capacity), capacity, i});
      std::fill_n(taken.back().array, capacity, i);
    }
  }
  for (const Taken& one : taken)
    expect_untouched(one);
}

}  // namespace
}  // namespace colx
