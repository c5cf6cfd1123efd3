// The index from hashes to numbers, against a map, through its growth and with hashes good and bad.

#include "util/compact_index.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "tests/support/random.h"
#include "util/hashing.h"

namespace colx {
namespace {

// Things that are numbers themselves, kept in order of insertion and hashed by a given function.
template <typename Hash>
class Things {
 public:
  explicit Things(Hash hash) : _hash(hash) {}

  // Looks a thing up, and puts it in if it is not there. Both must agree with a map.
  void see(std::uint64_t thing) {
    const auto [expected, is_new] = _numbers.emplace(thing, static_cast<std::uint32_t>(_things.size()));
    const std::uint32_t found = find(thing);
    ASSERT_EQ(found, is_new ? CompactIndex::none : expected->second);
    if (!is_new) return;
    _things.push_back(thing);
    _index.insert(_hash(thing), [&](std::uint32_t number) { return _hash(_things[number]); });
    ASSERT_EQ(_index.size(), _things.size());
  }

  std::uint32_t find(std::uint64_t thing) const {
    return _index.find(_hash(thing), [&](std::uint32_t number) { return _things.at(number) == thing; });
  }

  void expect_all_there() const {
    for (const auto& [thing, number] : _numbers) {
      ASSERT_EQ(find(thing), number);
      const std::uint32_t candidate = _index.candidate(_hash(thing));
      ASSERT_NE(candidate, CompactIndex::none);
      ASSERT_LT(candidate, _things.size());
      _index.prefetch(_hash(thing));
    }
  }

 private:
  Hash _hash;
  CompactIndex _index;
  std::vector<std::uint64_t> _things;
  std::unordered_map<std::uint64_t, std::uint32_t> _numbers;
};

TEST(CompactIndexTest, FindsNothingWhenItIsEmpty) {
  CompactIndex index;
  const auto anything = [](std::uint32_t) { return true; };
  EXPECT_EQ(index.find(5, anything), CompactIndex::none);
  EXPECT_EQ(index.candidate(0), CompactIndex::none);
  index.insert(5, [](std::uint32_t) { return std::uint64_t{5}; });
  EXPECT_EQ(index.find(5, anything), 0U);
  EXPECT_EQ(index.size(), 1U);
  index.clear();
  EXPECT_EQ(index.find(5, anything), CompactIndex::none);
  EXPECT_EQ(index.size(), 0U);
  index.insert(5, [](std::uint32_t) { return std::uint64_t{5}; });
  EXPECT_EQ(index.find(5, anything), 0U);
}

TEST(CompactIndexTest, AgreesWithAMapThroughItsGrowth) {
  test::Random random;
  Things things([](std::uint64_t thing) { return mix(thing ^ hash_keys[0], hash_keys[1]); });
  for (int i = 0; i < 300000 && !::testing::Test::HasFatalFailure(); ++i)
    things.see(random.below(random.once_in(2) ? 1000 : 4000000000U));
  things.expect_all_there();
}

TEST(CompactIndexTest, AgreesWithAMapUnderBadHashes) {
  test::Random random;
  const auto run = [&](auto hash) {
    Things things(hash);
    for (int i = 0; i < 4000 && !::testing::Test::HasFatalFailure(); ++i)
      things.see(random.below(2500));
    things.expect_all_there();
  };
  run([](std::uint64_t) { return std::uint64_t{0}; });
  run([](std::uint64_t) { return ~std::uint64_t{0}; });        // all at the last slot
  run([](std::uint64_t thing) { return thing; });              // all at the first, told apart by the rest
  run([](std::uint64_t thing) { return (thing % 7) << 61; });  // few homes, nothing to tell apart
  run([](std::uint64_t thing) { return ~std::uint64_t{0} - thing % 13; });
}

}  // namespace
}  // namespace colx
