// The order in which a set of records is listed, against a literal model of the chained table that defines it.

#include "model/ngram_set.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <random>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "model/ngram_hash.h"
#include "tests/reference/chained_table.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::Record;
using test::SettingsGuard;

// The order after inserting the first `count` records into an empty set, as places in the sequence of insertions.
std::vector<std::size_t> listed_order(const std::deque<Record>& records, std::size_t count) {
  NGramSet set;
  std::map<const NGram*, std::size_t> places;
  for (std::size_t i = 0; i < count; ++i) {
    set.insert(&*records[i]);
    places[&*records[i]] = i;
  }
  EXPECT_EQ(set.size(), count);
  std::vector<std::size_t> order;
  for (const NGram* record : set)
    order.push_back(places.at(record));
  return order;
}

reference::ChainedTable model_of(const std::deque<Record>& records, std::size_t count) {
  reference::ChainedTable table;
  for (std::size_t i = 0; i < count; ++i)
    table.insert(NGramHashCounter::count_hash(*records[i]), i);
  return table;
}

// Distinct records of two members. Lemmas from a small range and several tags make many of them hash alike.
std::deque<Record> random_records(std::mt19937& random, std::size_t count, std::uint32_t lemmas) {
  std::deque<Record> records;
  std::set<std::tuple<std::uint32_t, std::uint32_t, std::uint8_t>> seen;
  while (records.size() < count) {
    const auto first = static_cast<std::uint32_t>(random() % lemmas);
    const auto second = static_cast<std::uint32_t>(random() % lemmas);
    const auto tag = static_cast<std::uint8_t>(random() % 4);
    if (seen.emplace(first, second, tag).second)
      records.emplace_back(std::vector<MemberSpec>{{first, tag, 2}, {second, 0, 0}}, 3);
  }
  return records;
}

TEST(NGramSetTest, AnEmptySetListsNothing) {
  const SettingsGuard guard(2);
  EXPECT_TRUE(listed_order({}, 0).empty());
}

TEST(NGramSetTest, ANewRecordGoesToTheHeadOfItsChain) {
  const SettingsGuard guard(2);
  std::deque<Record> records;
  for (std::uint8_t tag = 0; tag < 4; ++tag)  // tags are not hashed: one chain
    records.emplace_back(std::vector<MemberSpec>{{1, tag, 2}, {2, 0, 0}}, 3);
  EXPECT_EQ(listed_order(records, 4), (std::vector<std::size_t>{3, 2, 1, 0}));
}

TEST(NGramSetTest, GrowthTurnsAChainAround) {
  const SettingsGuard guard(2);
  std::deque<Record> records;
  for (unsigned tag = 0; tag < 194; ++tag)
    records.emplace_back(std::vector<MemberSpec>{{1, static_cast<std::uint8_t>(tag), 2}, {2, 0, 0}}, 3);
  // All in one chain. 193 records fit 193 buckets, last one first.
  std::vector<std::size_t> expected;
  for (std::size_t i = 193; i-- > 0;)
    expected.push_back(i);
  EXPECT_EQ(listed_order(records, 193), expected);
  // The next one makes the set grow: the chain is emptied from its head and comes out in the order of insertion, and
  // then the new record goes to the head.
  expected = {193};
  for (std::size_t i = 0; i < 193; ++i)
    expected.push_back(i);
  EXPECT_EQ(listed_order(records, 194), expected);
}

TEST(NGramSetTest, BucketsAreListedByIndex) {
  const SettingsGuard guard(2);
  // Records of the first word alone, a head: hash 0xBEADBEEF ^ lemma, as 0xDEADBEEF ^ 0x60000000 = 0xBEADBEEF.
  // 0xBEADBEEF = 3199057647 is 43 modulo 193; lemmas 0, 1, 2 and 3 give ...EF, ...EE, ...ED and ...EC, that is the
  // buckets 43, 42, 41 and 40.
  std::deque<Record> records;
  for (std::uint32_t lemma = 0; lemma < 4; ++lemma)
    records.emplace_back(std::vector<MemberSpec>{{lemma, 0, 0}, {0, 0, 1}}, 2);
  ASSERT_EQ(NGramHashCounter::count_hash(*records[0]) % 193, 43U);
  EXPECT_EQ(listed_order(records, 4), (std::vector<std::size_t>{3, 2, 1, 0}));
}

TEST(NGramSetTest, ListsAsTheChainedTableDoesAroundEveryGrowthStep) {
  const SettingsGuard guard(2);
  for (unsigned seed = 1; seed <= 3; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const std::deque<Record> records = random_records(random, 60000, seed == 1 ? 150 : 5000);
    for (const std::size_t prime : {193U, 389U, 769U, 1543U, 3079U, 6151U, 12289U, 24593U, 49157U}) {
      for (const std::size_t count : {prime - 1, prime, prime + 1, prime + prime / 5}) {
        ASSERT_EQ(listed_order(records, count), model_of(records, count).order()) << count << " records";
      }
    }
  }
}

TEST(NGramSetTest, ListsAsTheChainedTableDoesForRandomNumbersOfRecords) {
  const SettingsGuard guard(2);
  for (unsigned seed = 11; seed <= 40; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const std::size_t count = random() % 3000;
    const std::deque<Record> records = random_records(random, count, 60 + static_cast<std::uint32_t>(random() % 1000));
    ASSERT_EQ(listed_order(records, count), model_of(records, count).order()) << count << " records";
  }
}

TEST(NGramSetTest, FindsWhatWasInsertedAndNothingElse) {
  const SettingsGuard guard(2);
  std::mt19937 random(7);
  const std::deque<Record> records = random_records(random, 2000, 40);
  NGramSet set;
  for (std::size_t i = 0; i < 1000; ++i)
    set.insert(&*records[i]);
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Record same = Record::copy_of(*records[i]);
    ASSERT_EQ(set.find(*same), i < 1000 ? &*records[i] : nullptr);
  }
}

}  // namespace
}  // namespace colx
