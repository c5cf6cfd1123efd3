#include "util/short_runs.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/random.h"

namespace colx {
namespace {

// All runs stand in memory of exactly their size, so that a look beyond them is noticed.

TEST(ShortRuns, LoadBytesInTheirOrder) {
  std::vector<char> bytes;
  std::uint64_t expected = 0;
  for (std::size_t length = 0; length <= 8; ++length) {
    if (length > 0) {
      bytes.push_back(static_cast<char>(0xF0 + length));
      expected |= std::uint64_t{0xF0 + length} << (8 * (length - 1));
    }
    bytes.shrink_to_fit();
    EXPECT_EQ(load_up_to_8(bytes.data(), length), expected) << length;
  }
}

TEST(ShortRuns, AreEqualWhenAllTheirBytesAre) {
  test::Random random;
  for (int round = 0; round < 20000; ++round) {
    const std::string text = random.text(40, "ab\xFF");
    const std::vector<char> a(text.begin(), text.end());
    std::vector<char> b = a;
    if (!b.empty() && random.once_in(2)) b[random.below(static_cast<std::uint32_t>(b.size()))] = 'b';
    ASSERT_EQ(equal_bytes(a.data(), b.data(), a.size()), a == b) << text;
  }
}

TEST(ShortRuns, AreCopiedWholeAndNothingElseIsWritten) {
  test::Random random;
  for (std::uint32_t length = 0; length <= 80; ++length) {
    std::vector<char> from(length);
    for (char& c : from)
      c = static_cast<char>(random.below(256));
    std::vector<char> to(length, '#');
    ASSERT_EQ(copy_bytes(to.data(), from.data(), length), to.data() + length);
    ASSERT_EQ(to, from);
    std::vector<char> larger(length + 16, '#');
    copy_bytes(larger.data(), from.data(), length);
    from.resize(length + 16, '#');
    ASSERT_EQ(larger, from);
  }
}

}  // namespace
}  // namespace colx
