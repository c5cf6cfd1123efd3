// The order in which records are listed, against a literal model of the chained table that defines it.

#include "model/listed_order.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/ngram_hash.h"
#include "tests/reference/chained_table.h"
#include "tests/support/random.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using Hashes = std::vector<std::uint32_t>;
using Order = std::vector<std::size_t>;

// The order of the first `count` records.
Order listed(const Hashes& hashes, std::size_t count) {
  ZeroedArray<std::uint32_t> weak_hashes(count);
  for (std::size_t i = 0; i < count; ++i)
    weak_hashes[i] = hashes[i];
  const ZeroedArray<std::uint32_t> order = listed_order(weak_hashes);
  return {order.begin(), order.end()};
}

Order defined(const Hashes& hashes, std::size_t count) {
  reference::ChainedTable table;
  for (std::size_t i = 0; i < count; ++i)
    table.insert(hashes[i], i);
  return table.order();
}

// As many hashes, drawn from so many different ones, which are themselves small or spread over all 32 bits.
Hashes random_hashes(test::Random& random, std::size_t count, std::uint32_t different) {
  const bool small = random.once_in(2);
  const auto spread = static_cast<std::uint32_t>(random.engine()()) | 1U;
  Hashes hashes(count);
  for (std::uint32_t& hash : hashes)
    hash = random.below(different) * (small ? 1 : spread);
  return hashes;
}

TEST(ListedOrderTest, NothingListsNothing) {
  EXPECT_TRUE(listed({}, 0).empty());
}

TEST(ListedOrderTest, ANewRecordGoesToTheHeadOfItsChain) {
  EXPECT_EQ(listed(Hashes(4, 77), 4), (Order{3, 2, 1, 0}));
}

TEST(ListedOrderTest, GrowthTurnsAChainAround) {
  const Hashes hashes(194, 0xD4119FCC);
  // All in one chain. 193 records fit 193 buckets, last one first.
  Order expected;
  for (std::size_t i = 193; i-- > 0;)
    expected.push_back(i);
  EXPECT_EQ(listed(hashes, 193), expected);
  // The next one makes the set grow: the chain is emptied from its head and comes out in the order of insertion, and
  // then the new record goes to the head.
  expected = {193};
  for (std::size_t i = 0; i < 193; ++i)
    expected.push_back(i);
  EXPECT_EQ(listed(hashes, 194), expected);
}

TEST(ListedOrderTest, BucketsAreListedByIndex) {
  const test::SettingsGuard guard(2);
  // Records of the first word alone, a head: hash 0xBEADBEEF ^ lemma, as 0xDEADBEEF ^ 0x60000000 = 0xBEADBEEF.
  // 0xBEADBEEF = 3199057647 is 43 modulo 193; lemmas 0, 1, 2 and 3 give ...EF, ...EE, ...ED and ...EC, that is the
  // buckets 43, 42, 41 and 40.
  Hashes hashes;
  for (std::uint32_t lemma = 0; lemma < 4; ++lemma)
    hashes.push_back(NGramHashCounter::count_hash(*test::Record({{lemma, 0, 0}, {0, 0, 1}}, 2), 1));
  ASSERT_EQ(hashes[0] % 193, 43U);
  EXPECT_EQ(listed(hashes, 4), (Order{3, 2, 1, 0}));
}

TEST(ListedOrderTest, TakesTheLargestHashes) {
  EXPECT_EQ(listed({4294967295U, 4294967294U, 0}, 3), defined({4294967295U, 4294967294U, 0}, 3));
}

TEST(ListedOrderTest, ListsAsTheChainedTableDoesAroundEveryGrowthStep) {
  test::Random random;
  for (const std::uint32_t different : {4294967295U, 60000U, 300U}) {
    const Hashes hashes = random_hashes(random, 118000, different);
    for (const std::size_t prime : {193U, 389U, 769U, 1543U, 3079U, 6151U, 12289U, 24593U, 49157U, 98317U}) {
      for (const std::size_t count : {prime - 1, prime, prime + 1, prime + prime / 5})
        ASSERT_EQ(listed(hashes, count), defined(hashes, count)) << count << " records of " << different << " hashes";
    }
  }
}

TEST(ListedOrderTest, ListsAsTheChainedTableDoesForRandomNumbersOfRecords) {
  test::Random random;
  for (int round = 0; round < 200; ++round) {
    const std::size_t count = random.below(random.once_in(20) ? 60000 : 3000);
    const Hashes hashes = random_hashes(random, count, 1 + random.below(random.once_in(2) ? 10 : 100000));
    ASSERT_EQ(listed(hashes, count), defined(hashes, count)) << count << " records";
  }
}

}  // namespace
}  // namespace colx
