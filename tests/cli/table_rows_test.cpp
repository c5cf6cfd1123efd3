#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/cli/tool_runner.h"
#include "tests/support/temporary_folder.h"

namespace colx::cli {
namespace {

// A pair of that first word.
std::string with_word(const std::string& word) {
  return "1\t" + word + "\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t1\n-nan\tinf\t0.8\t0.3\t0.4\t0.5\n\n";
}

TEST(TableRows, SortsByCodePointsOrByTheLocaleOfTheEnvironment) {
  const std::string input = with_word("chata") + with_word("Cyril") +
                            with_word(
                                "\u010d"
                                "aj") +
                            with_word("hora") + "\n";
  const std::vector<std::string> arguments = {"--columns", "lemma1", "--sort", "lemma1"};
  const std::vector<std::string> by_locale = {"--columns", "lemma1", "--sort", "lemma1", "--locale"};
  const std::string by_code_points =
      "lemma1\nCyril\nchata\nhora\n\u010d"
      "aj\n";
  ToolOptions options;
  options.settings = {"LC_ALL=C.UTF-8"};
  EXPECT_EQ(run_tool("ngrex-table", by_locale, input, options).out, by_code_points);
  options.settings = {"LC_ALL=xx_XX"};
  EXPECT_EQ(run_tool("ngrex-table", by_locale, input, options).status, 2);
  EXPECT_EQ(run_tool("ngrex-table", arguments, input, options).out, by_code_points);

  const test::TemporaryFolder folder;
  if (std::system(("localedef -i cs_CZ -f UTF-8 " + folder.path("cs_CZ.UTF-8") + " 2> /dev/null").c_str()) != 0)
    GTEST_SKIP() << "there is no source of a locale";
  options.settings = {"LOCPATH=" + folder.path(), "LC_ALL=cs_CZ.UTF-8"};
  EXPECT_EQ(run_tool("ngrex-table", by_locale, input, options).out,
            "lemma1\nCyril\n\u010d"
            "aj\nhora\nchata\n");
}

TEST(TableRows, SortsInATemporaryFileWhatDoesNotFitIntoMemory) {
  std::string input;
  std::string expected = "lemma1\n";
  for (int i = 999; i >= 100; --i)
    input += with_word(std::to_string(i));
  for (int i = 100; i < 1000; ++i)
    expected += std::to_string(i) + "\n";
  const std::vector<std::string> arguments = {"--columns", "lemma1", "--sort", "lemma1", "--memory", "8K"};
  const test::TemporaryFolder folder;
  ToolOptions options;
  options.settings = {"TMPDIR=" + folder.path()};
  const ToolResult result = run_tool("ngrex-table", arguments, input + "\n", options);
  EXPECT_EQ(result.out, expected);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  options.settings = {"TMPDIR=" + folder.path("none")};
  const ToolResult without = run_tool("ngrex-table", arguments, input + "\n", options);
  EXPECT_EQ(without.status, 1);
  EXPECT_EQ(without.err,
            "ngrex-table: cannot make a temporary file in " + folder.path("none") + ": No such file or directory\n");
}

TEST(TableRows, FindsAProtectedLemmaAsItIsTyped) {
  const ToolResult result = run_tool("ngrex-table", {"--columns", "lemma1", "--where", "lemma1=New_York"},
                                     with_word("New\xCB\x8DYork") + with_word("York") + "\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "lemma1\nNew\xCB\x8DYork\n");
  EXPECT_EQ(
      result.err,
      "ngrex-table: \"New_York\" is taken for \"New\xCB\x8DYork\", the lemma that ngrex-import makes of it, as no "
      "lemma has one of ' : ; ^ _\n");
}

TEST(TableRows, AProfileIsAlignedByWhatATerminalShows) {
  const std::string input = with_word("\u65e5\u672c") + with_word("wet") + "\n";
  ToolOptions options;
  options.settings = {"LC_ALL=C"};
  // Cells 4 1 1 1: logDice is 14 + log2(2 / 4).
  const ToolResult result = run_tool("ngrex-table", {"--profile", "rain"}, input, options);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out,
            "  collocate  tag  frequency  logDice  pattern\n"
            "\n"
            "rain as head: what is Atr of it (2 rows, 2 occurrences)\n"
            "  wet        A            1       13  wet <Atr rain\n"
            "  \u65e5\u672c       A            1       13  \u65e5\u672c <Atr rain\n");
  const ToolResult without = run_tool("ngrex-table", {"--profile", "snow"}, input);
  EXPECT_EQ(without.status, 1);
  EXPECT_EQ(without.out, "");
  EXPECT_EQ(without.err, "ngrex-table: no N-gram that is asked for has the lemma \"snow\"\n");
}

TEST(TableRows, IgnoresCaseInEveryScriptWhateverTheLocale) {
  ToolOptions options;
  options.settings = {"LC_ALL=C"};
  const std::string input = with_word("\u010cern\u00fd") + with_word("\u010dern\u00e1") + "\n";
  EXPECT_EQ(run_tool("ngrex-table", {"--where", "lemma1=\u010dERN\u00dd", "--ignore-case", "--columns", "lemma1"},
                     input, options)
                .out,
            "lemma1\n\u010cern\u00fd\n");
}

TEST(TableRows, ASetThatCannotBeReadIsAnInputError) {
  const ToolResult result = run_tool("ngrex-table", {"--where", "lemma1 in no/such/file"}, with_word("a") + "\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "ngrex-table: cannot open no/such/file for reading: No such file or directory\n");
}

}  // namespace
}  // namespace colx::cli
