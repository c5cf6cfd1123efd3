// The quick look at a line says what a look at every byte says.

#include "import/line_scan.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/random.h"

namespace colx {

void PrintTo(const LineTraits& traits, std::ostream* out) {
  *out << traits.blanks << traits.not_ascii << traits.wide_space << traits.empty_column;
}

namespace {

LineTraits _plain_traits(std::string_view line) {
  LineTraits traits;
  std::size_t column = 0;  // its size
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\t') {
      traits.empty_column = traits.empty_column || column == 0;
      column = 0;
      continue;
    }
    ++column;
    traits.blanks = traits.blanks || byte <= 0x20;
    traits.not_ascii = traits.not_ascii || byte >= 0x80;
    traits.wide_space = traits.wide_space || byte == 0xC2 || byte == 0xE1 || byte == 0xE2 || byte == 0xE3;
  }
  traits.empty_column = traits.empty_column || column == 0;
  return traits;
}

TEST(LineScan, FindsEveryByteValueAtEveryPlace) {
  for (std::size_t size = 1; size <= 80; size += size < 20 ? 1 : 11) {
    for (std::size_t at = 0; at < size; ++at) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string line(size, 'a');
        line[at] = static_cast<char>(byte);
        ASSERT_EQ(scan_line(line), _plain_traits(line)) << size << " " << at << " " << byte;
      }
    }
  }
  EXPECT_EQ(scan_line(""), _plain_traits(""));
}

TEST(LineScan, AgreesOnRandomLines) {
  test::Random random;
  constexpr std::string_view bytes("\t\t\t\tabc! \x08\n\x00\x7F\x80\x89\xA0\xFF\xC2\xE3_1", 21);
  for (int round = 0; round < 20000; ++round) {
    const std::string line = random.text(200, round % 2 == 0 ? bytes : "\tabcdefg");
    ASSERT_EQ(scan_line(line), _plain_traits(line)) << line;
  }
}

TEST(LineScan, FindsEveryTabInOrder) {
  test::Random random;
  for (int round = 0; round < 20000; ++round) {
    const std::string line = random.text(200,
                                         "\t\xFF"
                                         "ab ");
    std::vector<std::size_t> found, found_by_8, expected;
    scan_line(line, [&](std::size_t at) { found.push_back(at); });
    const LineTraits by_8 = scan_line_by_8(line, [&](std::size_t at) { found_by_8.push_back(at); });
    ASSERT_EQ(by_8, _plain_traits(line)) << ::testing::PrintToString(line);
    for (std::size_t at = line.find('\t'); at != std::string::npos; at = line.find('\t', at + 1))
      expected.push_back(at);
    ASSERT_EQ(found_by_8, expected) << ::testing::PrintToString(line);
    ASSERT_EQ(found, expected) << ::testing::PrintToString(line);
  }
}

}  // namespace
}  // namespace colx
