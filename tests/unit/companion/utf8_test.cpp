#include "companion/utf8.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace colx {
namespace {

TEST(Utf8, ReadsBackEveryCodePoint) {
  for (char32_t code = 0; code <= 0x10FFFF; ++code) {
    if (code >= 0xD800 && code < 0xE000) continue;
    std::string text;
    append_character(text, code);
    const Character character = first_character(text + "x");
    ASSERT_TRUE(character.is_valid) << static_cast<unsigned>(code);
    ASSERT_EQ(character.code, code);
    ASSERT_EQ(character.size, text.size());
  }
}

TEST(Utf8, RefusesWhatIsNoCharacter) {
  // Continuation alone, cut, overlong, surrogate, beyond the last code point.
  for (const std::string text : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xF0\x80\x80\xAF", "\xED\xA0\x80",
                                 "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xE2\x82("}) {
    EXPECT_FALSE(first_character(text).is_valid) << testing::PrintToString(text);
    EXPECT_EQ(first_character(text).size, 1U);
  }
}

TEST(Utf8, SendsNoControlCharacterToATerminal) {
  EXPECT_EQ(printable("\xef\xbb\xbf\xe2\x80\xaex\xe2\x80\x8c"), "??x\xe2\x80\x8c");
  EXPECT_EQ(printable("a\x1b[1m\tb\x7f\xc2\x9b\xc3\xa9\xff"), "a?[1m?b??\xc3\xa9?");
}

TEST(Utf8, CountsColumnsAsATerminalDoes) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  EXPECT_EQ(display_width("abc"), 3U);
  EXPECT_EQ(display_width("\xc3\xa9"), 1U);                  // e with acute
  EXPECT_EQ(display_width("e\xcc\x81"), 1U);                 // e, combining acute
  EXPECT_EQ(display_width("\xe4\xbd\xa0\xe5\xa5\xbd"), 4U);  // two Chinese characters
  std::setlocale(LC_CTYPE, before.c_str());
}

}  // namespace
}  // namespace colx
