#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

#include "companion/utf8.h"
#include "import/datafile_writer.h"
#include "tests/support/random.h"

namespace colx {
namespace {

TEST(DatafileField, KnowsWhiteSpaceOfUnicodeAndNothingElse) {
  const std::set<char32_t> replaced = {0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x20,   0x85,   0x1680,
                                       0x2000, 0x2001, 0x2002, 0x2003, 0x2004, 0x2005, 0x2006, 0x2007,
                                       0x2008, 0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000};
  for (char32_t code = 1; code <= 0x10FFFF; ++code) {
    std::string text;
    append_character(text, code);
    ASSERT_EQ(datafile_field(text), replaced.contains(code) ? "\xC2\xA0" : text) << static_cast<std::uint32_t>(code);
  }
}

TEST(DatafileField, TellsTextsThatMayStandAsTheyAre) {
  test::Random random;
  for (int round = 0; round < 20000; ++round) {
    const std::string text = random.text(5, " \tab\xC2\x85\xA0\xE1\x9A\x80\xE2\x81\x9F\xA8\xE3");
    ASSERT_EQ(is_datafile_field(text), datafile_field(text) == text) << ::testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace colx
