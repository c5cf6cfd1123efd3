#include "util/hashing.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/random.h"

namespace colx {
namespace {

TEST(Hashing, HashesAreEqualWhenBytesAreAndHardlyEverOtherwise) {
  test::Random random;
  for (int round = 0; round < 20000; ++round) {
    // In memory of exactly their size, so that a look beyond it is noticed.
    const std::string text = random.text(40, "ab");
    const std::vector<char> a(text.begin(), text.end());
    std::vector<char> b = a;
    if (!b.empty() && random.once_in(2)) b[random.below(static_cast<std::uint32_t>(b.size()))] = 'b';
    ASSERT_EQ(hash_bytes(a.data(), a.size()) == hash_bytes(b.data(), b.size()), a == b) << text;
  }
}

TEST(Hashing, TellsZeroBytesApartByTheirNumber) {
  const char zeros[20] = {};
  for (std::size_t a = 0; a <= 20; ++a) {
    for (std::size_t b = 0; b < a; ++b)
      EXPECT_NE(hash_bytes(zeros, a), hash_bytes(zeros, b)) << a << " and " << b;
  }
}

}  // namespace
}  // namespace colx
