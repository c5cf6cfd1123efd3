// Numbers come back from their bytes.

#include "spill/encoding.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace colx {
namespace {

TEST(EncodingTest, ShortNumbersTakeAByteForEverySevenBits) {
  for (unsigned bits = 0; bits <= 64; ++bits) {
    // The largest number of so many bits, and the one before.
    const std::uint64_t largest = bits == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
    for (const std::uint64_t number : {largest, largest - (largest > 0 ? 1 : 0)}) {
      std::string bytes;
      append_short(bytes, number);
      EXPECT_EQ(bytes.size(), short_size(number)) << number;
      const char* from = bytes.data();
      EXPECT_EQ(get_short(from), number);
      EXPECT_EQ(from, bytes.data() + bytes.size());
    }
  }
  std::string bytes;
  append_short(bytes, 300);
  EXPECT_EQ(bytes, "\xac\x02");  // 300 = 2 * 128 + 44, and 44 + 128 = 0xac
}

TEST(EncodingTest, FixedNumbersAreLittleEndian) {
  std::string bytes;
  append_fixed(bytes, std::uint32_t{0x01020304});
  EXPECT_EQ(bytes, "\x04\x03\x02\x01");
  const char* from = bytes.data();
  EXPECT_EQ(get_fixed<std::uint32_t>(from), 0x01020304U);
}

}  // namespace
}  // namespace colx
