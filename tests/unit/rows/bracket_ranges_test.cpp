#include "rows/bracket_ranges.h"

#include <gtest/gtest.h>

#include <string>

#include "companion/errors.h"

namespace colx::table {
namespace {

TEST(BracketRanges, WritesLettersOutsideAsciiOut) {
  EXPECT_EQ(with_ranges_written_out("^[\xd0\xb0-\xd0\xb3x]+$"), "^[\xd0\xb0\xd0\xb1\xd0\xb2\xd0\xb3x]+$");
  EXPECT_EQ(with_ranges_written_out("[^~-\xc2\x81]"), "[^~-\x7f\xc2\x80\xc2\x81]");
  EXPECT_EQ(with_ranges_written_out("[A-\xc2\x80]]"), "[A-\x7f\xc2\x80]]");
  EXPECT_EQ(with_ranges_written_out("[]-\xc2\x80]"), "[]-\x7f\xc2\x80]");
  EXPECT_EQ(with_ranges_written_out("[^]-\xc2\x80x]"), "[^]-\x7f\xc2\x80x]");
  EXPECT_EQ(with_ranges_written_out("[--\xc2\x80]"), "[--\x7f\xc2\x80]");
  EXPECT_EQ(with_ranges_written_out("[\xc3\xa9-\xc3\xa9]"), "[\xc3\xa9]");
}

TEST(BracketRanges, LeavesEverythingElseAsItIs) {
  for (const std::string expression :
       {"", "a-z", "[a-z]", "[]a-c]", "[^]-a]", "[a-]", "[-a]", "[[:alpha:]-z]", "[\xc3\xa9-]", "\\[\xc3\xa9-\xc3\xaa",
        "[", "[^", "[a", "[\xc3\xa9-", "[[.hyphen.]-z]", "[\xff-\xc3\xa9]", "a\\"})
    EXPECT_EQ(with_ranges_written_out(expression), expression);
}

TEST(BracketRanges, RefusesARangeThatRunsBackwards) {
  EXPECT_THROW(with_ranges_written_out("[\xd0\xb3-\xd0\xb0]"), usage_error);
}

}  // namespace
}  // namespace colx::table
