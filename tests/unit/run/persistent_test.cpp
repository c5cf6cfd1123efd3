#include "run/persistent.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "model/ngram.h"

namespace colx {
namespace {

TEST(Persistent, HasLemmasAndTagsInBlocksOf64KiBAndTheLengthOfOneText) {
  EXPECT_EQ(persistent::lemmas.block_size(), 65538U);
  EXPECT_EQ(persistent::tags.block_size(), 65538U);
}

TEST(Persistent, NumbersLemmasIn32AndTagsIn8Bits) {
  EXPECT_TRUE((std::is_same_v<decltype(persistent::lemmas), StringStore<std::uint32_t>>));
  EXPECT_TRUE((std::is_same_v<decltype(persistent::tags), StringStore<std::uint8_t>>));
}

TEST(Persistent, CarriesUpToTheLargest32BitNumberOutOfACounter) {
  EXPECT_EQ((Overflow<const NGram*, std::uint32_t>::_max_value), 4294967295U);
}

}  // namespace
}  // namespace colx
