#include "util/zeroed_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace colx {
namespace {

TEST(ZeroedArrayTest, StartsAsZeros) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{1000}, std::size_t{3} << 20}) {
    ZeroedArray<std::uint32_t> array(size);
    ASSERT_EQ(array.size(), size);
    ASSERT_EQ(std::count(array.begin(), array.end(), 0U), static_cast<std::ptrdiff_t>(size));
    array[0] = array[size - 1] = 7;
    EXPECT_EQ(std::as_const(array)[size - 1], 7U);
  }
}

TEST(ZeroedArrayTest, OfNothingTakesNothing) {
  const ZeroedArray<std::uint32_t> none(0), default_made;
  EXPECT_EQ(none.begin(), none.end());
  EXPECT_EQ(default_made.size(), 0U);
}

TEST(ZeroedArrayTest, MovesItsContent) {
  ZeroedArray<std::uint32_t> array(10);
  array[3] = 5;
  const std::uint32_t* const address = array.begin();
  ZeroedArray<std::uint32_t> moved(std::move(array));
  EXPECT_EQ(moved.begin(), address);
  EXPECT_EQ(moved.size(), 10U);
  ZeroedArray<std::uint32_t> assigned(4);
  assigned = std::move(moved);
  EXPECT_EQ(assigned.begin(), address);
  EXPECT_EQ(assigned.size(), 10U);
  EXPECT_EQ(assigned[3], 5U);
}

TEST(ZeroedArrayTest, MoreThanThereIsThrows) {
  EXPECT_THROW(ZeroedMemory(std::size_t{1} << 60), std::bad_alloc);
}

}  // namespace
}  // namespace colx
