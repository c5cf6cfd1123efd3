#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "tests/cli/tool_runner.h"
#include "tests/support/gzip.h"
#include "tests/support/temporary_folder.h"

namespace colx::cli {
namespace {

const std::string two_rains =
    "1\tHeavy\theavy\tAAS1\t2\tAtr\n2\train\train_;N\tNNS-\t3\tSb\n3\tfell\tfall_:W\tVpS-\t0\tPred\n\n"
    "1\tCold\tcold\tAAS1\t2\tAtr\n2\train\train_;N\tNNS-\t3\tSb\n3\tfell\tfall_:W\tVpS-\t0\tPred\n\n";
const std::string one_snow =
    "1\tHeavy\theavy\tAAS1\t2\tAtr\n2\tsnow\tsnow_;N\tNNS-\t3\tSb\n3\tfell\tfall_:W\tVpS-\t0\tPred\n\n";

std::string row_of(const std::string& first, const std::string& relation, const std::string& second, int frequency) {
  return "1\t" + first + "\t\t2\t" + relation + "\n2\t" + second + "\t\t0\tHead\n3\t1\t1\t" +
         std::to_string(frequency) + "\n1\t1\t1\t1\t1\t1\n\n";
}

const std::string two_rows = row_of("rain", "Sb", "fall", 2) + row_of("heavy", "Atr", "snow", 1) + "\n";

// A folder with a corpus in which ngrex-examples runs.
class ExamplesProgram : public testing::Test {
 protected:
  ExamplesProgram() {
    _folder.write("rain.dat", two_rains);
    _folder.write("snow.dat", one_snow);
    _folder.write("list", "rain.dat\nsnow.dat\n");
    _folder.write("pairs", two_rows);
  }

  ToolResult _run(std::vector<std::string> arguments, const std::string& input = "") const {
    ToolOptions options;
    options.working_directory = _folder.path();
    return run_tool("ngrex-examples", arguments, input, options);
  }

  // The same, over the list.
  ToolResult _examples(std::vector<std::string> arguments, const std::string& input = "") const {
    arguments.insert(arguments.begin(), {"-i", "list"});
    return _run(std::move(arguments), input);
  }

  std::string _content(const std::string& name) const {
    std::ifstream file(_folder.path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  test::TemporaryFolder _folder;
};

const std::string both_rows_as_text =
    "1. rain <Sb fall (2 times)\n"
    "  rain.dat:1\n"
    "    Heavy [rain] [fell]\n"
    "  rain.dat:5\n"
    "    Cold [rain] [fell]\n"
    "\n"
    "2. heavy <Atr snow (1 time)\n"
    "  snow.dat:1\n"
    "    [Heavy] [snow] fell\n";

TEST_F(ExamplesProgram, ShowsTheSentencesOfEveryRow) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--examples", "all", "pairs"}, {"--first", "pairs"}, {"--examples", "all", "-"}}) {
    const ToolResult result = _examples(arguments, arguments.back() == "-" ? two_rows : "");
    EXPECT_EQ(result.out, both_rows_as_text);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
  }
  const ToolResult result = _examples({"--examples", "all"}, test::gzip(two_rows));
  EXPECT_EQ(result.out, both_rows_as_text);
}

TEST_F(ExamplesProgram, TheOutputMayBeAFile) {
  const ToolResult result = _examples({"--first", "-o", "shown", "pairs"});
  EXPECT_EQ(result.out + result.err, "");
  EXPECT_EQ(_content("shown"), both_rows_as_text);
}

TEST_F(ExamplesProgram, RowsAreChosenAsInATable) {
  EXPECT_EQ(_examples({"--where", "lemma2=SNOW", "--ignore-case", "pairs"}).out,
            "1. heavy <Atr snow (1 time)\n  snow.dat:1\n    [Heavy] [snow] fell\n");
  EXPECT_EQ(_examples({"--sort", "+frequency", "--top", "1", "pairs"}).out,
            "1. heavy <Atr snow (1 time)\n  snow.dat:1\n    [Heavy] [snow] fell\n");
  const ToolResult none = _examples({"--min-frequency", "3", "pairs"});
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(none.err, "ngrex-examples: pairs: no N-gram is asked for\n");
  EXPECT_EQ(none.status, 0);
}

TEST_F(ExamplesProgram, APatternTakesThePlaceOfTheFile) {
  const ToolResult result = _examples({"--pattern", "* <Atr rain", "--first", "--examples", "1"});
  EXPECT_EQ(result.out, "* <Atr rain (first 1 shown)\n  rain.dat:1\n    [Heavy] [rain] fell\n");
  EXPECT_EQ(result.err, "");
  const ToolResult none = _examples({"--pattern", "rain <Atr *"});
  EXPECT_EQ(none.err, "ngrex-examples: nothing was found in the corpus\n");
  EXPECT_EQ(none.status, 0);
}

TEST_F(ExamplesProgram, AnotherCorpusThanTheOneThatWasCountedIsTold) {
  const std::string question =
      "; were --list, --prefix, --mask, --rules and the radius of contexts those of the run of ngrex that counted "
      "them?\n";
  const ToolResult none = _examples({"-m", "**", "pairs"});
  EXPECT_EQ(none.err, "ngrex-examples: none of the N-grams was found in the corpus" + question);
  EXPECT_EQ(none.status, 0);
  _folder.write("list", "snow.dat\n");
  const ToolResult some = _examples({"pairs"});
  EXPECT_EQ(
      some.err,
      "ngrex-examples: 1 of 2 N-grams were not found as often as their frequency says, the first 0 times in place "
      "of 2: rain <Sb fall" +
          question);
  // The first ones say nothing of how many there are.
  _folder.write("list", "rain.dat\nsnow.dat\nrain.dat\n");
  EXPECT_EQ(_examples({"--first", "--examples", "1", "pairs"}).err, "");
}

TEST_F(ExamplesProgram, PrefixMaskAndRulesAreThoseOfNgrex) {
  _folder.write("bare", "rain\n");
  _folder.write("rain", "");
  _folder.write("rules", "A N\n");
  const std::string pairs = "1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n3\t1\t1\t1\n1\t1\t1\t1\t1\t1\n\n\n";
  _folder.write("masked", pairs);
  std::filesystem::rename(_folder.path("rain.dat"), _folder.path("x-rain"));
  const ToolResult found = _run({"-i", "bare", "-d", "x-", "-m", "*", "masked"});
  EXPECT_EQ(found.out, "1. heavy <Atr rain (1 time)\n  x-rain:1\n    [Heavy] [rain] fell\n");
  EXPECT_EQ(found.err, "");
  // Rules see the last word first, so these refuse it.
  EXPECT_NE(_run({"-i", "bare", "-d", "x-", "-m", "*", "-f", "rules", "masked"}).err.find("none of the N-grams"),
            std::string::npos);
  const ToolResult without_mask = _run({"-i", "bare", "-d", "x-", "-f", "rules", "--pattern", "heavy <Atr rain"});
  EXPECT_NE(without_mask.out, "");
  EXPECT_NE(without_mask.err.find("without a tag mask"), std::string::npos) << without_mask.err;
}

TEST_F(ExamplesProgram, SkippedSentencesAreTold) {
  std::string faulty;
  for (int i = 0; i < 8; ++i)
    faulty += "1 a a X x Sb\n\n";
  _folder.write("rain.dat", faulty + two_rains);
  const ToolResult result = _examples({"--first", "pairs"});
  std::string expected;  // ngrex counts a line more for each
  for (const int line : {1, 4, 7, 10, 13})
    expected += "ngrex-examples: rain.dat: Incorrect input format detected at line " + std::to_string(line) +
                ". Skipping current sentence...\n";
  EXPECT_EQ(result.err, expected + "ngrex-examples: 3 further sentences are skipped, as ngrex skips them\n");
  EXPECT_NE(result.out.find("rain.dat:17"), std::string::npos);
}

TEST_F(ExamplesProgram, NoInputIsOverwritten) {
  _folder.write("rules", "A N\n");
  _folder.write("words", "rain\n");
  _folder.write("notes", "# ngrex sentences 1\n");
  std::filesystem::create_symlink("rain.dat", _folder.path("link"));
  for (const std::string output : {"list", "rain.dat", "snow.dat", "link", "rules", "words", "pairs", "notes"}) {
    const std::string before = _content(output);
    const ToolResult result = _examples(
        {"-m", "*", "-f", "rules", "--where", "lemma1 in words", "--sentences", "notes", "-o", output, "pairs"});
    EXPECT_EQ(result.status, 2) << output;
    EXPECT_EQ(result.err, "ngrex-examples: output " + output +
                              " is also an input\nTry 'ngrex-examples --help' for more information.\n");
    EXPECT_EQ(_content(output), before);
  }
}

TEST_F(ExamplesProgram, UsageErrorsEndWithStatusTwo) {
  const std::vector<std::vector<std::string>> wrong = {
      {"pairs"},
      {"-i", ""},
      {"-i", "-"},
      {"-i", "list", "-m", "*x", "pairs"},
      {"-i", "list", "-f", "-", "pairs"},
      {"-i", "list", "--sentences", "-", "pairs"},
      {"-i", "list", "--examples", "0", "pairs"},
      {"-i", "list", "--examples", "some", "pairs"},
      {"-i", "list", "--examples", "-1", "pairs"},
      {"-i", "list", "--format", "table", "pairs"},
      {"-i", "list", "--format", "tsv", "--tree", "pairs"},
      {"-i", "list", "--where", "rain", "pairs"},
      {"-i", "list", "--where", "lemma3=rain", "pairs"},
      {"-i", "list", "pairs", "more"},
      {"-i", "list", "--pattern", "rain"},
      {"-i", "list", "--pattern", "* <Atr rain", "pairs"},
      {"-i", "list", "--pattern", "* <Atr rain", "--top", "3"},
      {"-i", "list", "--pattern", "* <Atr rain", "--where", "lemma1=rain"},
      {"-i", "list", "--pattern", "* <Atr rain", "--pattern", "* <Atr * <Sb *"}};
  for (const std::vector<std::string>& arguments : wrong) {
    const ToolResult result = _run(arguments, two_rows);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
}

TEST_F(ExamplesProgram, InputsThatCannotBeReadEndWithStatusOne) {
  const auto fails = [&](const std::vector<std::string>& arguments, const std::string& because) {
    const ToolResult result = _run(arguments);
    EXPECT_EQ(result.status, 1) << testing::PrintToString(arguments);
    EXPECT_EQ(result.err, "ngrex-examples: " + because + "\n");
    EXPECT_EQ(result.out, "");
  };
  fails({"-i", "none", "pairs"}, "cannot open none for reading");
  fails({"-i", "list", "none"}, "cannot open none for reading: No such file or directory");
  fails({"-i", "list", "-m", "*", "-f", "none", "pairs"}, "cannot open none for reading");
  _folder.write("list", "rain.dat\nnone\nfolder\n");
  fails({"-i", "list", "pairs"}, "list: the datafile none cannot be opened for reading; 2 of the list will not do");
  _folder.write("list", "/dev/null\n");
  fails({"-i", "list", "pairs"},
        "list: the datafile /dev/null is no regular file, and cannot be read again where sentences are shown");
  _folder.write("list", "\n");
  fails({"-i", "list", "pairs"}, "list: expected paths of datafiles, found none");
}

TEST_F(ExamplesProgram, SentencesAreShownAsTheyWereWritten) {
  _folder.write("bank.conllu",
                "# sent_id = w1\n# text = Heavy rain fell.\n1\tHeavy\theavy\tADJ\tA\t_\t2\tamod\t_\t_\n"
                "2\train\train\tNOUN\tN\t_\t3\tnsubj\t_\t_\n3\tfell\tfall\tVERB\tV\t_\t0\troot\t_\tSpaceAfter=No\n"
                "4\t.\t.\tPUNCT\tZ\t_\t3\tpunct\t_\t_\n\n");
  ToolOptions options;
  options.working_directory = _folder.path();
  ASSERT_EQ(run_tool("ngrex-import", {"-q", "-o", "bank.dat", "--list", "banks", "--sentences", "notes", "bank.conllu"},
                     "", options)
                .status,
            0);
  EXPECT_EQ(_run({"-i", "banks", "--sentences", "notes", "--pattern", "rain <Sb fall"}).out,
            "rain <Sb fall (found 1 time)\n  w1\n    Heavy [rain] [fell].\n");
}

}  // namespace
}  // namespace colx::cli
