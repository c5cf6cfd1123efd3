#include "companion/command_line.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "companion/errors.h"

namespace colx {
namespace {

// What the options of a made-up program do: they are written down.
struct Notes {
  std::string text;
};

void _note(Notes& notes, const GivenOption& given) {
  notes.text += std::string(given.key) + "=" + given.value + ";";
}

constexpr auto rows = std::to_array<Option<Notes>>(
    {{{"-o,--output", "FILE", "where to"}, _note},
     {{"-l,--loud", "", "say a great many words in a row that do not fit here"}, _note},
     {{"--very-long-name", "VALUE", "a name that fills its column"}, _note},
     {{"--number", "K", "a number"},
      [](Notes& notes, const GivenOption& given) { notes.text += std::to_string(whole_number(given, 1)); }},
     {{"-h,--help", "", "this"}, [](Notes& notes, const GivenOption&) { notes.text += "helped"; }, true}});
constexpr auto entries = entries_of(rows);
constexpr Program program = {"tool", "[FILE]", "Does it.", "Notes.", entries, 2};

std::string _shown(const std::vector<std::string>& arguments) {
  Notes notes;
  std::vector<std::string> files;
  apply_command_line(program, rows, arguments, notes, files);
  for (const std::string& file : files)
    notes.text += file + ";";
  return notes.text;
}

std::string _error(const std::vector<std::string>& arguments) {
  try {
    _shown(arguments);
  } catch (const usage_error& error) {
    return error.what();
  }
  return "";
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
  EXPECT_EQ(_shown({"-ox", "--output=", "--output=a=b", "-lol"}), "output=x;output=;output=a=b;loud=;output=l;");
  EXPECT_EQ(_shown({"--", "-o"}), "-o;");
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  EXPECT_EQ(_error({"--bogus=1"}), "there is no option --bogus");
  EXPECT_EQ(_error({"--loud", "--lou"}), "there is no option --lou");  // no abbreviations
  EXPECT_EQ(_error({"--out", "x"}), "there is no option --out");
  EXPECT_EQ(_error({"--out"}), "there is no option --out");
  EXPECT_EQ(_error({"--=x"}), "there is no option --");
  EXPECT_EQ(_error({"-x"}), "there is no option -x");
  EXPECT_EQ(_error({"-lx", "-y"}), "there is no option -x");
  EXPECT_EQ(_error({"--loud", "-o"}), "-o: expected a value, found none");
  EXPECT_EQ(_error({"--output"}), "--output: expected a value, found none");
  EXPECT_EQ(_error({"--loud=much"}), "--loud takes no value, found \"--loud=much\"");
  EXPECT_EQ(_error({"--loud="}), "--loud takes no value, found \"--loud=\"");
  EXPECT_EQ(_error({"a", ""}), "expected the name of a FILE, found \"\"");
  EXPECT_EQ(_error({"a", "b", "c"}), "expected 2 FILE at most, found a further one: c");
}

TEST(CommandLine, HelpBreaksLongLinesAndAlignsTheRest) {
  EXPECT_EQ(help(program),
            "Usage: tool [options] [FILE]\n"
            "Does it.\n"
            "\n"
            "Options:\n"
            "  -o, --output FILE         where to\n"
            "  -l, --loud                say a great many words in a row that do not fit\n"
            "                            here\n"
            "      --very-long-name VALUE\n"
            "                            a name that fills its column\n"
            "      --number K            a number\n"
            "  -h, --help                this\n"
            "\n"
            "Notes.\n");
}

TEST(CommandLine, AnswersAQuestionWhateverElseIsWrong) {
  for (const std::vector<std::string>& line : std::vector<std::vector<std::string>>{
           {"-o", "x", "--help", "--bogus"}, {"--help", "-o"}, {"--bogus", "-h"}, {"--number", "x", "-h"}, {"", "-lh"}})
    EXPECT_EQ(_shown(line), "helped") << line.front();
  EXPECT_EQ(_error({"--bogus", "-o", "--help"}), "there is no option --bogus");
}

TEST(CommandLine, WholeNumbersHaveNoSignAndNoRest) {
  const auto read = [](const std::string& text, std::size_t least) { return whole_number({0, "top", text}, least); };
  EXPECT_EQ(read("0", 0), 0U);
  EXPECT_EQ(read("18446744073709551615", 0), 18446744073709551615U);
  for (const std::string wrong : {"", "-1", "+1", "1 ", "1e3", "x", "18446744073709551616"})
    EXPECT_THROW(read(wrong, 0), usage_error) << wrong;
  EXPECT_EQ(_error({"--number", "0"}), "--number: expected a whole number from 1, found \"0\"");
}

}  // namespace
}  // namespace colx
