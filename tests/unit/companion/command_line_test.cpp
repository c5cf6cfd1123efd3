#include "companion/command_line.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "companion/errors.h"

namespace colx {
namespace {

constexpr std::array<OptionEntry, 3> entries = {{{"-o,--output", "FILE", "where to"},
                                                 {"--loud", "", "say a great many words in a row that do not fit here"},
                                                 {"--very-long-name", "VALUE", "a name that fills its column"}}};
constexpr Program program = {"tool", "[FILE]", "Does it.", "Notes.", entries, 2};

std::string _error(const std::vector<std::string>& arguments) {
  try {
    parse_command_line(program, arguments);
  } catch (const usage_error& error) {
    return error.what();
  }
  return "";
}

std::string _shown(const std::vector<std::string>& arguments) {
  const CommandLine line = parse_command_line(program, arguments);
  std::string result;
  for (const auto& [key, value] : line.options)
    result += std::string(key) + "=" + value + ";";
  for (const std::string& file : line.files)
    result += file + ";";
  return result;
}

TEST(CommandLine, KeepsOptionsInTheirOrderWhereverTheFilesStand) {
  EXPECT_EQ(_shown({"a", "--loud", "-o", "x", "--very-long-name=v", "-", "--output", "y", "--loud"}),
            "loud=;output=x;very-long-name=v;output=y;loud=;a;-;");
  EXPECT_EQ(_shown({"[a,b]", "-o", "[c]", "[]"}), "output=[c];[a,b];[];");
  EXPECT_EQ(_shown({}), "");
}

TEST(CommandLine, TakesAnyValueAndEndsOptionsAtTwoHyphens) {
  EXPECT_EQ(_shown({"-o", "-", "--output", "--loud", "-o", "-x", "--", "--loud"}),
            "output=-;output=--loud;output=-x;--loud;");
  EXPECT_EQ(_shown({"-ox", "--output=", "--output=a=b"}), "output=x;output=;output=a=b;");
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  EXPECT_NE(_error({"--lou"}), "");
  EXPECT_NE(_error({"-x"}), "");
  EXPECT_EQ(_error({"--loud", "-o"}), "-o: expected a value, found none");
  EXPECT_NE(_error({"--loud=much"}), "");
  EXPECT_NE(_error({"--loud=false"}), "");
  EXPECT_EQ(_error({"a", ""}), "expected the name of a FILE, found \"\"");
  EXPECT_EQ(_error({"a", "b", "c"}), "expected 2 FILE at most, found a further one: c");
}

TEST(CommandLine, HelpBreaksLongLinesAndAlignsTheRest) {
  EXPECT_EQ(answer(program, "help"),
            "Usage: tool [options] [FILE]\n"
            "Does it.\n"
            "\n"
            "Options:\n"
            "  -o, --output FILE         where to\n"
            "      --loud                say a great many words in a row that do not fit\n"
            "                            here\n"
            "      --very-long-name VALUE\n"
            "                            a name that fills its column\n"
            "\n"
            "Notes.\n");
}

TEST(CommandLine, AnswersAQuestionWhateverElseIsWrong) {
  constexpr std::array<OptionEntry, 2> with_help = {{{"-o,--output", "FILE", "where to"}, {"--help", "", "this"}}};
  const Program asked = {"tool", "", "", "", with_help, 0};
  EXPECT_EQ(parse_command_line(asked, {"-o", "x", "--help", "--bogus"}).options.size(), 2U);
  EXPECT_EQ(parse_command_line(asked, {"--help", "-o"}).options.size(), 1U);
  EXPECT_EQ(parse_command_line(asked, {"--bogus", "--help"}).options.size(), 1U);
  EXPECT_THROW(parse_command_line(asked, {"--bogus", "-o", "--help"}), usage_error);
}

TEST(CommandLine, WholeNumbersHaveNoSignAndNoRest) {
  EXPECT_EQ(whole_number("top", "0", 0), 0U);
  EXPECT_EQ(whole_number("top", "18446744073709551615", 0), 18446744073709551615U);
  for (const std::string wrong : {"", "-1", "+1", "1 ", "1e3", "x", "18446744073709551616"})
    EXPECT_THROW(whole_number("top", wrong, 0), usage_error) << wrong;
  EXPECT_THROW(whole_number("split", "0", 1), usage_error);
}

}  // namespace
}  // namespace colx
