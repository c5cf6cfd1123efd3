#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/cli/tool_runner.h"
#include "tests/support/gzip.h"
#include "tests/support/temporary_folder.h"

namespace colx::cli {
namespace {

const std::string _one_pair = "1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t1\n-nan\tinf\t0.8\t0.3\t0.4\t0.5\n\n";

// The same pair in a corpus of one sentence.
const std::string sentence = "1\tHeavy\theavy\tA\t2\tAtr\n2\train\train\tN\t0\tPred\n\n";

std::string written(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

ToolResult run_report(const std::vector<std::string>& arguments, const std::string& input = _one_pair + "\n") {
  return run_tool("ngrex-report", arguments, input);
}

TEST(ReportProgram, HelpAndVersionGoToStandardOutput) {
  for (const std::string option : {"--help", "--version"}) {
    const ToolResult result = run_report({option});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(holds(result.out, "ngrex-report"));
    EXPECT_EQ(result.err, "");
  }
}

TEST(ReportProgram, UsageErrorsEndWithStatusTwoAndWithoutAReport) {
  const std::vector<std::vector<std::string>> wrong = {{"--nonsense"},
                                                       {"--measures", "g"},
                                                       {"--measures", ""},
                                                       {"--sort", "lemma3"},
                                                       {"--where", "tag1~("},
                                                       {"--top", "x"},
                                                       {"one", "two"},
                                                       {"-i", ""},
                                                       {"-i", "-"},
                                                       {"-m", "*x"},
                                                       {"--examples", "0"},
                                                       {"--examples", "3"},
                                                       {"--statistics", "-"},
                                                       {"--sentences", "words"},
                                                       {"-f", "rules"},
                                                       {"--statistics", ""},
                                                       {"-o", ""}};
  for (const auto& arguments : wrong) {
    const ToolResult result = run_report(arguments);
    EXPECT_EQ(result.status, 2) << arguments[0];
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
}

TEST(ReportProgram, MeasuresOfPairsAreRefusedForLongerNgrams) {
  const std::string triple = "1\ta\tA\t2\tAtr\n2\tb\tN\t3\tSb\n3\tc\tV\t0\tHead\n8\t0\t0\t1\t0\t0\t0\t1\n0\t0\n\n\n";
  const ToolResult result = run_report({"--measures", "logDice,Fisher"}, triple);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "ngrex-report: N-grams of 3 words have no Fisher\nTry 'ngrex-report --help' for more information.\n");
}

TEST(ReportProgram, OptionsForExamplesNeedTheCorpus) {
  EXPECT_EQ(run_report({"--examples", "3"}).err,
            "ngrex-report: --examples is for example sentences, which need the list of datafiles, -i\n"
            "Try 'ngrex-report --help' for more information.\n");
}

TEST(ReportProgram, WritesTheSameBytesToAFileAndToStandardOutput) {
  const test::TemporaryFolder folder;
  const std::string pairs = folder.write("pairs", _one_pair + "\n");
  const std::string path = folder.path() + "/report.html";
  const ToolResult first = run_report({"--title", "t", pairs, "-o", path});
  EXPECT_EQ(first.status, 0);
  EXPECT_EQ(first.out + first.err, "");
  const std::string page = written(path);
  EXPECT_EQ(run_report({"--title", "t", pairs, "-o", path}).status, 0);
  EXPECT_EQ(written(path), page);
  // But for the command line, which it names.
  const std::string there = run_report({"--title", "t", pairs, "-o", "-"}).out;
  const std::string name = "-o " + path;
  ASSERT_TRUE(holds(page, name));
  EXPECT_EQ(std::string(page).replace(page.find(name), name.size(), "-o -"), there);
}

TEST(ReportProgram, ReadsCompressedInput) {
  EXPECT_EQ(run_report({}, test::gzip(_one_pair + "\n")).out, run_report({}).out);
}

TEST(ReportProgram, WithoutAnNgramThereIsNoReport) {
  const ToolResult result = run_report({}, "\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "ngrex-report: standard input has no N-gram; there is no report\n");
}

TEST(ReportProgram, NgramsOfSeveralCorporaAreRefused) {
  std::string other = _one_pair;
  other.replace(other.find("4\t1\t1\t1"), 7, "5\t1\t1\t1");
  const ToolResult result = run_report({}, _one_pair + other + "\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "ngrex-report: standard input: the tables of its N-grams have different totals, 7 and 8, as if several "
            "files had been joined\n");
}

TEST(ReportProgram, AFaultInTheInputLeavesWhatWasThere) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("report.html", "before");
  const ToolResult result = run_report({"-o", path}, _one_pair + "1\tx\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(holds(result.err, "line 6:")) << result.err;
  EXPECT_EQ(written(path), "before");
}

TEST(ReportProgram, NeverOverwritesAnInput) {
  const test::TemporaryFolder folder;
  const std::string pairs = folder.write("pairs", _one_pair + "\n");
  const std::string words = folder.write("words", "heavy\n");
  const std::string datafile = folder.write("datafile", sentence);
  const std::string list = folder.write("list", datafile + "\n");
  const std::string rules = folder.write("rules", "A N\n");
  const std::string citations = folder.write("citations", "# ngrex sentences 1\n");
  const std::string statistics = folder.write("statistics", "no statistics");
  std::filesystem::create_symlink(pairs, folder.path() + "/link");
  for (const std::string& output :
       {pairs, folder.path() + "/link", words, datafile, list, rules, citations, statistics}) {
    const std::string before = written(output);
    const ToolResult result = run_report({pairs, "--where", "lemma1 in " + words, "-i", list, "-m", "*", "-f", rules,
                                          "--sentences", citations, "-s", statistics, "-o", output});
    EXPECT_EQ(result.status, 2) << output;
    EXPECT_TRUE(holds(result.err, "output " + output + " is also an input\n")) << result.err;
    EXPECT_EQ(written(output), before);
  }
}

TEST(ReportProgram, SaysWhenTheCorpusIsAnotherOne) {
  const test::TemporaryFolder folder;
  const std::string datafile = folder.write("datafile", sentence);
  const std::string list = folder.write("list", datafile + "\n");
  const ToolResult same = run_report({"-i", list, "-m", "*"});
  EXPECT_EQ(same.status, 0);
  EXPECT_EQ(same.err, "");
  EXPECT_TRUE(holds(same.out, "\"examples\": {\"each\": 3, \"ngrams\": 1, \"sentences\": 1, \"cited\": false}"));
  const ToolResult unmasked = run_report({"-i", list});
  EXPECT_EQ(unmasked.status, 0);
  EXPECT_EQ(unmasked.err,
            "ngrex-report: 1 of 1 N-grams were not found as often as their frequency says; were --list, --prefix, "
            "--mask, --rules and the radius of contexts those of the run of ngrex that counted them?\n");
  EXPECT_TRUE(holds(unmasked.out, "\"sentences\": 0"));
}

TEST(ReportProgram, TellsTheSizeOfTheCorpus) {
  const test::TemporaryFolder folder;
  const std::string statistics =
      folder.write("statistics",
                   "Statistics for datafile a:\n# of words: 6\n# of sentences: 2\n# of 2-grams extracted: 4\n\n"
                   "Statistics for datafile b:\n# of words: 5\n# of sentences: 3\n# of 2-grams extracted: 3\n\n"
                   "Overall datafiles statistics:\n# of words: 11\n# of sentences: 5\n# of 2-grams extracted: 7\n\n"
                   "Strings storage statistics:\n# of unique lemmas: 6\n# of unique tags: 3\n\n"
                   "2-grams storage statistics:\n# of unique 2-grams of type 0: 1\n# of unique 2-grams of type 1: 4\n"
                   "# of unique 2-grams of type 2: 4\n# of unique 2-grams of type 3: 6\n\n");
  const ToolResult result = run_report({"-s", statistics});
  EXPECT_TRUE(holds(result.out, "\"statistics\": {\"files\": 2, \"words\": 11, \"sentences\": 5, \"ngrams\": 7}"));
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(holds(run_report({}).out, "\"statistics\": null"));

  std::string other = _one_pair;
  other.replace(other.find("4\t1\t1\t1"), 7, "5\t1\t1\t1");
  EXPECT_EQ(run_report({"-s", statistics}, other + "\n").err,
            "ngrex-report: " + statistics +
                " counts 7 N-grams of 2 words, the tables of standard input have a total of 8 of 2; "
                "is it of the same run of ngrex?\n");
}

}  // namespace
}  // namespace colx::cli
