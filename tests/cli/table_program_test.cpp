#include <gtest/gtest.h>

#include <csignal>
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

const std::string pair = "1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t1\n-nan\tinf\t0.8\t0.3\t0.4\t0.5\n\n";

std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> names_in(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  return names;
}

TEST(TableProgram, HelpAndVersionGoToStandardOutput) {
  for (const std::string option : {"--help", "--version"}) {
    const ToolResult result = run_tool("ngrex-table", {option});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("ngrex-table"), std::string::npos);
    EXPECT_EQ(result.err, "");
  }
}

TEST(TableProgram, UsageErrorsEndWithStatusTwo) {
  const std::vector<std::vector<std::string>> wrong = {
      {"--nonsense"},      {"--sort", "lemma9"},  {"--sort", "rank"},      {"--top", "x"},      {"--format", "xls"},
      {"--where", "rain"}, {"--where", "tag1~("}, {"--columns", "lemma3"}, {"--measures", "g"}, {"-", "second"}};
  for (const auto& arguments : wrong) {
    const ToolResult result = run_tool("ngrex-table", arguments, pair + "\n");
    EXPECT_EQ(result.status, 2) << arguments[0];
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
}

TEST(TableProgram, SeveralFilesAreRefusedWithTheReason) {
  const ToolResult result = run_tool("ngrex-table", {"a.txt", "--top", "3", "b.txt"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "ngrex-table: expected one FILE, found 2: a.txt and b.txt; the counts of several files cannot be added, as "
            "the cells of an N-gram depend on all N-grams of its corpus, also on those that its file leaves out; run "
            "ngrex over one list with all datafiles instead\n"
            "Try 'ngrex-table --help' for more information.\n");
}

TEST(TableProgram, RowsBeforeAFaultStand) {
  const ToolResult result = run_tool("ngrex-table", {"--columns", "lemma", "--", "-"}, pair + "1\tx\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "lemma1\tlemma2\nheavy\train\n");
  EXPECT_NE(result.err.find("line 6:"), std::string::npos);
}

TEST(TableProgram, ReadsCompressedInput) {
  const std::string plain = run_tool("ngrex-table", {}, pair + pair + "\n").out;
  for (const std::string& input : {test::gzip(pair + pair + "\n"), test::gzip(pair) + test::gzip(pair + "\n")}) {
    const ToolResult result = run_tool("ngrex-table", {}, input);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, plain);
  }
  const std::string members = test::gzip(pair + pair);
  const ToolResult cut = run_tool("ngrex-table", {}, members.substr(0, members.size() - 4));
  EXPECT_EQ(cut.status, 1);
  EXPECT_EQ(cut.out, plain);
  EXPECT_EQ(cut.err,
            "ngrex-table: standard input: the compressed data end too early; the file is truncated; the table ends "
            "here\n");
}

TEST(TableProgram, AFullDiskIsAnError) {
  ToolOptions full;
  full.output_path = "/dev/full";
  EXPECT_EQ(run_tool("ngrex-table", {}, pair + "\n", full).status, 1);
}

TEST(TableProgram, AReaderThatGoesAwayEndsItInSilence) {
  ToolOptions closed;
  closed.output_closed_pipe = true;
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{}, {"--sort", "frequency"}, {"--help"}}) {
    const ToolResult result = run_tool("ngrex-table", arguments, pair + "\n", closed);
    EXPECT_EQ(result.status, 128 + SIGPIPE);
    EXPECT_EQ(result.err, "");
  }
  closed.ignore_sigpipe = true;
  const ToolResult result = run_tool("ngrex-table", {}, pair + "\n", closed);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "ngrex-table: cannot write to standard output: Broken pipe\n");
}

TEST(TableProgram, HelpIsGivenWhateverElseStandsOnTheLine) {
  const std::string help = run_tool("ngrex-table", {"--help"}).out;
  const std::vector<std::vector<std::string>> lines = {{"--nonsense", "--help"}, {"--help", "--sort", "lemma9"},
                                                       {"--top", "x", "-h"},     {"--format=xls", "--help", "--sort"},
                                                       {"a", "b", "--help"},     {"--help", "--version"}};
  for (const std::vector<std::string>& arguments : lines) {
    const ToolResult result = run_tool("ngrex-table", arguments);
    EXPECT_EQ(result.status, 0) << arguments[0];
    EXPECT_EQ(result.out, help) << arguments[0];
    EXPECT_EQ(result.err, "") << arguments[0];
  }
  EXPECT_EQ(run_tool("ngrex-table", {"--", "--help"}).status, 1);
}

TEST(TableProgram, WritesAFileWhole) {
  const test::TemporaryFolder folder;
  ToolOptions here;
  here.working_directory = folder.path();
  const auto run = [&](const std::vector<std::string>& arguments, const std::string& input) {
    return run_tool("ngrex-table", arguments, input, here);
  };
  ToolResult result = run({"--columns=lemma", "-o", "t.tsv"}, pair + "\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out + result.err, "");
  EXPECT_EQ(content_of(folder.path("t.tsv")), "lemma1\tlemma2\nheavy\train\n");

  // A failure leaves what was there, and nothing else.
  result = run({"--output=t.tsv"}, pair + "1\tx\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("; t.tsv is not written"), std::string::npos);
  EXPECT_EQ(content_of(folder.path("t.tsv")), "lemma1\tlemma2\nheavy\train\n");
  EXPECT_EQ(names_in(folder.path()), std::vector<std::string>{"t.tsv"});

  // Permissions stay; a link leads to where it led.
  std::filesystem::permissions(folder.path("t.tsv"), std::filesystem::perms(0640));
  std::filesystem::create_symlink("t.tsv", folder.path("link"));
  EXPECT_EQ(run({"--columns=lemma1", "-olink"}, pair + "\n").status, 0);
  EXPECT_EQ(content_of(folder.path("t.tsv")), "lemma1\nheavy\n");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
  EXPECT_EQ(std::filesystem::status(folder.path("t.tsv")).permissions(), std::filesystem::perms(0640));
}

TEST(TableProgram, NeverWritesOverItsInput) {
  const test::TemporaryFolder folder;
  const std::string input = folder.write("in", pair + "\n");
  std::filesystem::create_hard_link(input, folder.path("same"));
  const ToolResult result = run_tool("ngrex-table", {"-o", folder.path("same"), input});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("is also an input"), std::string::npos);
  EXPECT_EQ(content_of(input), pair + "\n");
}

TEST(TableProgram, FilesThatCannotBeWrittenAreErrors) {
  EXPECT_EQ(run_tool("ngrex-table", {"-o", "no/such/folder/t"}, pair + "\n").status, 1);
  // Links of its own, so that nothing outside the folder is at stake: one to a descriptor, whose file has no name.
  const test::TemporaryFolder folder;
  std::filesystem::create_symlink("/proc/self/fd/1", folder.path("out"));
  const ToolResult result = run_tool("ngrex-table", {"-o", folder.path("out"), "--columns=lemma1"}, pair + "\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "lemma1\nheavy\n");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("out")));
  EXPECT_EQ(names_in(folder.path()), std::vector<std::string>{"out"});
}

TEST(TableProgram, AMissingFileIsAnInputError) {
  const ToolResult result = run_tool("ngrex-table", {"no/such/file"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("no/such/file"), std::string::npos);
}

}  // namespace
}  // namespace colx::cli
