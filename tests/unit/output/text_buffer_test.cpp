#include "output/text_buffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ios>
#include <sstream>
#include <string>
#include <string_view>

#include "tests/support/random.h"

namespace colx {
namespace {

TEST(TextBufferTest, HandsOverByFlush) {
  std::ostringstream os;
  TextBuffer text(os);
  text << std::string_view("pair") << '\t' << std::uint32_t{4294967295U} << '\n';
  text.flush();
  EXPECT_EQ(os.str(), "pair\t4294967295\n");
  text.flush();
  EXPECT_EQ(os.str(), "pair\t4294967295\n");
}

TEST(TextBufferTest, WritesWhatAStreamWritesInItsOrder) {
  test::Random random;
  for (int round = 0; round < 20; ++round) {
    std::ostringstream os, plain;
    TextBuffer text(os);
    for (int i = 0; i < 3000; ++i) {
      const std::string part(random.below(random.once_in(100) ? 100000 : random.once_in(9) ? 1100 : 20), 'x');
      const auto number = static_cast<std::uint32_t>(random.engine()() >> random.below(32));
      text << std::string_view(part) << '|' << number;
      plain << part << '|' << number;
      if (random.once_in(500)) text.flush();
    }
    text.flush();
    ASSERT_TRUE(os.str() == plain.str());
  }
}

TEST(TextBufferTest, LeavesTheStateOfTheStreamToItsOwner) {
  std::ostringstream os;
  os.setstate(std::ios::badbit);
  TextBuffer text(os);
  text << std::string_view("lost");
  text.flush();
  EXPECT_TRUE(os.bad());
  EXPECT_EQ(os.str(), "");
}

}  // namespace
}  // namespace colx
