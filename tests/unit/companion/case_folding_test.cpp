#include "companion/case_folding.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace colx {
namespace {

class CaseFolding : public ::testing::Test {
 protected:
  CaseFolding() : _before(std::setlocale(LC_CTYPE, nullptr)) { std::setlocale(LC_CTYPE, "C.UTF-8"); }
  ~CaseFolding() override { std::setlocale(LC_CTYPE, _before.c_str()); }

 private:
  std::string _before;
};

TEST_F(CaseFolding, MakesLettersOfAllScriptsThatHaveCaseAlike) {
  EXPECT_EQ(folded("Rain 7"), "rain 7");
  EXPECT_EQ(folded("\u010cERN\u00dd"), "\u010dern\u00fd");
  EXPECT_EQ(folded("\u0394\u03a1\u039f\u03a3\u039f\u03a3"), folded("\u03b4\u03c1\u03bf\u03c3\u03bf\u03c2"));
  EXPECT_EQ(folded("\u0414\u043e\u0436\u0434\u044c"), "\u0434\u043e\u0436\u0434\u044c");
  EXPECT_EQ(folded("\u65e5\u672c"), "\u65e5\u672c");
}

TEST_F(CaseFolding, KeepsApartWhatDiffersInMoreThanCase) {
  EXPECT_NE(folded("\u0130"), folded("i"));
  EXPECT_NE(folded("\u0131"), folded("I"));
  EXPECT_NE(folded("\u00df"), folded("SS"));
  EXPECT_NE(folded("e"), folded("\u00e9"));
}

TEST_F(CaseFolding, LeavesBytesThatAreNoUtf8) {
  EXPECT_EQ(folded("A\xff\xc3Z"), "a\xff\xc3z");
}

}  // namespace
}  // namespace colx
