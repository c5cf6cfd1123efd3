#include "report/base64.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace colx::report {
namespace {

std::string _encoded(const std::vector<std::string>& pieces) {
  TextOutput output;
  Base64Writer writer(output);
  for (const std::string& piece : pieces)
    writer.write(piece);
  writer.finish();
  return output.text();
}

// The test vectors of RFC 4648, section 10.
TEST(Base64, IsThatOfTheStandard) {
  EXPECT_EQ(_encoded({}), "");
  EXPECT_EQ(_encoded({"f"}), "Zg==");
  EXPECT_EQ(_encoded({"fo"}), "Zm8=");
  EXPECT_EQ(_encoded({"foo"}), "Zm9v");
  EXPECT_EQ(_encoded({"foob"}), "Zm9vYg==");
  EXPECT_EQ(_encoded({"fooba"}), "Zm9vYmE=");
  EXPECT_EQ(_encoded({"foobar"}), "Zm9vYmFy");
}

TEST(Base64, UsesTheLastTwoCharactersOfTheAlphabet) {
  EXPECT_EQ(_encoded({std::string("\xFB\xFF\xFE", 3)}), "+//+");
  EXPECT_EQ(_encoded({std::string("\0\0\0", 3)}), "AAAA");
}

TEST(Base64, DoesNotDependOnHowTheBytesAreCut) {
  const std::string text = "foobarfoo";
  for (std::size_t first = 0; first <= text.size(); ++first)
    for (std::size_t second = first; second <= text.size(); ++second)
      EXPECT_EQ(_encoded({text.substr(0, first), text.substr(first, second - first), text.substr(second)}),
                "Zm9vYmFyZm9v")
          << first << ' ' << second;
}

}  // namespace
}  // namespace colx::report
