// The fast look for UTF-8 agrees with one character by character.

#include "companion/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/random.h"

namespace colx {
namespace {

bool _plain_is_utf8(std::string_view text) {
  while (!text.empty()) {
    const Character character = first_character(text);
    if (!character.is_valid) return false;
    text.remove_prefix(character.size);
  }
  return true;
}

TEST(IsUtf8, HoldsAtEveryPlaceOfALine) {
  for (const std::string_view piece : {"\xC3\xA9", "\xE4\xBB\x8A", "\xF0\x9F\x8C\xA7", "\xC3", "\xA9", "\xC0\xAF",
                                       "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE4\xBB", "\xFF"}) {
    for (std::size_t before = 0; before < 20; ++before) {
      for (std::size_t behind = 0; behind < 20; ++behind) {
        const std::string line = std::string(before, 'a') + std::string(piece) + std::string(behind, 'b');
        ASSERT_EQ(is_utf8(line), _plain_is_utf8(line)) << before << " " << behind;
      }
    }
  }
  EXPECT_TRUE(is_utf8(""));
}

TEST(IsUtf8, HoldsInRandomBytes) {
  test::Random random;
  for (int round = 0; round < 20000; ++round) {
    const std::string line = random.text(24, "aaaaaaaaaaaa\xC3\xA9\xC3\xA9\xE4\xBB\x8A");
    ASSERT_EQ(is_utf8(line), _plain_is_utf8(line)) << line;
  }
}

}  // namespace
}  // namespace colx
