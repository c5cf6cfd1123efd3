// Amounts added up by keys, against a map: few items and many parts of them, keys that recur and keys that do not.

#include "util/key_sums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <vector>

#include "tests/support/random.h"

namespace colx {
namespace {

struct Item {
  std::uint64_t key;
  std::uint32_t amount;
};

// Adds the items up in both ways and compares with a map.
void expect_sums(KeySums& sums, const std::vector<Item>& items) {
  std::map<std::uint64_t, std::uint64_t> expected;
  for (const Item& item : items)
    expected[item.key] += item.amount;
  const auto sum_of = [&](const Item& item) {
    return std::min<std::uint64_t>(expected[item.key], std::numeric_limits<std::uint32_t>::max());
  };
  const auto key_of = [&](std::uint32_t i) { return items[i].key; };
  const auto amount_of = [&](std::uint32_t i) { return items[i].amount; };

  std::uint32_t next = 0;
  const auto size = static_cast<std::uint32_t>(items.size());
  sums.add_up(size, key_of, amount_of, [&](std::uint32_t i, std::uint32_t sum) {
    ASSERT_EQ(i, next++);
    ASSERT_EQ(sum, sum_of(items[i]));
  });
  EXPECT_EQ(next, items.size());
  EXPECT_EQ(sums.different(), expected.size());

  std::map<std::uint32_t, std::uint64_t> keys;
  next = 0;
  sums.number(size, key_of, amount_of, [&](std::uint32_t i, std::uint32_t number) {
    ASSERT_EQ(i, next++);
    ASSERT_LT(number, expected.size());
    ASSERT_EQ(keys.emplace(number, items[i].key).first->second, items[i].key);
    ASSERT_EQ(sums.sum(number), sum_of(items[i]));
  });
  EXPECT_EQ(next, items.size());
  EXPECT_EQ(keys.size(), expected.size());
  EXPECT_EQ(sums.different(), expected.size());
}

TEST(KeySumsTest, NoItemsHaveNoKeys) {
  KeySums sums;
  expect_sums(sums, {});
}

TEST(KeySumsTest, EveryKeyHasItsSumWhereverItsItemsStand) {
  KeySums sums(6);
  expect_sums(sums, {{7, 1}, {0, 2}, {7, 3}, {~std::uint64_t{0}, 4}, {0, 5}, {7, 6}});
}

TEST(KeySumsTest, SumsStayAtTheLargestNumber) {
  constexpr std::uint32_t largest = std::numeric_limits<std::uint32_t>::max();
  KeySums sums(5);
  expect_sums(sums, {{1, largest}, {2, largest}, {1, 1}, {3, largest - 1}, {3, 1}});
}

TEST(KeySumsTest, AgreesWithAMapOverManyItems) {
  test::Random random;
  KeySums sums(60000);
  for (const std::uint32_t size : {60000U, 1000U, 16384U, 16385U}) {
    SCOPED_TRACE(::testing::Message() << size << " items");
    // All different, few, one, and one for half of the items beside many: its part is far larger than the others.
    for (const std::uint32_t keys : {0xFFFFFFFFU, 300U, 1U, 0U}) {
      std::vector<Item> items(size);
      for (Item& item : items) {
        const bool is_the_one = keys == 0 && random.once_in(2);
        const std::uint64_t key = is_the_one ? 5 : random.below(keys == 0 ? 0xFFFFFFFFU : keys);
        item = {key << 32 | key, random.below(4)};
      }
      expect_sums(sums, items);
      if (::testing::Test::HasFatalFailure()) return;
    }
  }
}

}  // namespace
}  // namespace colx
