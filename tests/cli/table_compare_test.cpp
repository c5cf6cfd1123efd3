#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/cli/tool_runner.h"
#include "tests/support/gzip.h"
#include "tests/support/temporary_folder.h"

namespace colx::cli {
namespace {

std::string _pair(const std::string& a, const std::string& b, unsigned f, unsigned total) {
  return "1\t" + a + "\tA\t2\tAtr\n2\t" + b + "\tN\t0\tHead\n" + std::to_string(total - f) + "\t0\t0\t" +
         std::to_string(f) + "\n1\t2\t3\t4\t5\t6\n\n";
}

class CompareTest : public ::testing::Test {
 protected:
  CompareTest() {
    folder.write("here", _pair("heavy", "rain", 10, 100) + _pair("cold", "rain", 2, 100) + "\n");
    folder.write("there", _pair("deep", "snow", 4, 200) + _pair("heavy", "rain", 5, 200) + "\n");
  }
  ToolResult run(const std::vector<std::string>& arguments, const std::string& input = "") const {
    ToolOptions options;
    options.working_directory = folder.path();
    return run_tool("ngrex-table", arguments, input, options);
  }
  test::TemporaryFolder folder;
};

TEST_F(CompareTest, PrintsBothFrequenciesLogRatioAndKeyness) {
  const ToolResult result = run({"here", "--compare", "there"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "rank\tlemma1\tlemma2\ttag1\ttag2\tparent1\tparent2\trelation1\trelation2\tfrequency\tper_million\t"
            "frequency_other\tper_million_other\tkeyness_log_ratio\tkeyness\n"
            "1\theavy\train\tA\tN\t2\t0\tAtr\tHead\t10\t100000\t5\t25000\t2\t7.329811674\n"
            "2\tcold\train\tA\tN\t2\t0\tAtr\tHead\t2\t20000\t0\t0\tInf\t4.421355458\n"
            "3\tdeep\tsnow\tA\tN\t2\t0\tAtr\tHead\t0\t0\t4\t20000\t-Inf\t-3.270687633\n");
}

TEST_F(CompareTest, SortsFiltersAndPrintsInEveryFormat) {
  const std::vector<std::string> compare = {"here", "--compare", "there", "--columns", "lemma1,keyness,logDice"};
  const auto with = [&](std::vector<std::string> more) {
    more.insert(more.begin(), compare.begin(), compare.end());
    const ToolResult result = run(more);
    EXPECT_EQ(result.err, "");
    return result.out;
  };
  const std::string header = "lemma1\tkeyness\tlogDice\n";
  EXPECT_EQ(with({"--sort", "+keyness", "--precision", "4"}),
            header + "deep\t-3.271\tNA\ncold\t4.421\t14\nheavy\t7.33\t14\n");
  EXPECT_EQ(with({"--sort", "+keyness", "--top", "1", "--unsigned", "--precision", "4"}), header + "deep\t3.271\tNA\n");
  EXPECT_EQ(with({"--where", "frequency_other>0", "--min-frequency", "5", "--precision", "4"}),
            header + "heavy\t7.33\t14\n");
  EXPECT_EQ(with({"--where", "frequency=0", "--format", "jsonl", "--precision", "4"}),
            "{\"lemma1\":\"deep\",\"keyness\":-3.271,\"logDice\":null}\n");
  EXPECT_EQ(with({"--where", "keyness<0", "--format", "csv", "--precision", "4", "--na", "-"}),
            "lemma1,keyness,logDice\r\ndeep,-3.271,-\r\n");
  EXPECT_EQ(with({"--where", "keyness<0", "--format", "markdown", "--precision", "4"}),
            "| lemma1 | keyness | logDice |\n|---|---:|---:|\n| deep | -3.271 | NA |\n");
  EXPECT_EQ(with({"--where", "keyness<0", "--format", "table", "--precision", "4"}),
            "lemma1  keyness  logDice\ndeep     -3.271       NA\n");
}

TEST_F(CompareTest, GroupsRowsAndWritesFiles) {
  EXPECT_EQ(run({"here", "--compare", "there", "--per", "lemma2", "--top", "1", "--columns", "lemma,frequency_other",
                 "-o", "table"})
                .err,
            "");
  std::ifstream file(folder.path("table"), std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}),
            "lemma1\tlemma2\tfrequency_other\nheavy\train\t5\ndeep\tsnow\t4\n");
}

TEST_F(CompareTest, MergesBothFiles) {
  const std::string turned = "1\tlack\tV\t0\tHead\n2\train\tN\t1\tObj\n8\t0\t0\t2\n1\t2\t3\t4\t5\t6\n\n";
  const std::string straight = "1\train\tN\t2\tObj\n2\tlack\tV\t0\tHead\n7\t0\t0\t3\n1\t2\t3\t4\t5\t6\n\n";
  const std::string whole = turned + "1\ta\tN\t2\tObj\n2\tb\tV\t0\tHead\n2\t0\t0\t8\n1\t2\t3\t4\t5\t6\n\n\n";
  const std::string other = straight + "1\tb\tV\t0\tHead\n2\ta\tN\t1\tObj\n3\t0\t0\t7\n1\t2\t3\t4\t5\t6\n\n\n";
  folder.write("one", whole);
  folder.write("two", other);
  EXPECT_EQ(run({"one", "--compare", "two", "--merge", "order", "--columns", "lemma,frequency,frequency_other"}).out,
            "lemma1\tlemma2\tfrequency\tfrequency_other\nrain\tlack\t2\t3\na\tb\t8\t7\n");
}

TEST_F(CompareTest, ReadsStandardInputAndCompressedFiles) {
  const std::string expected = run({"here", "--compare", "there"}).out;
  folder.write("there.gz", test::gzip(_pair("deep", "snow", 4, 200) + _pair("heavy", "rain", 5, 200) + "\n"));
  EXPECT_EQ(run({"here", "--compare=there.gz"}).out, expected);
  const std::string here = _pair("heavy", "rain", 10, 100) + _pair("cold", "rain", 2, 100) + "\n";
  EXPECT_EQ(run({"--compare=there"}, here).out, expected);
  EXPECT_EQ(run({"--compare=-"}, here).status, 2);
}

TEST_F(CompareTest, RefusesWhatHasNoMeaningBesideIt) {
  const auto error = [&](const std::vector<std::string>& arguments) {
    const ToolResult result = run(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    return result.err.substr(0, result.err.find('\n'));
  };
  EXPECT_EQ(error({"here", "--sort", "keyness"}), "ngrex-table: the column keyness needs --compare FILE");
  EXPECT_EQ(error({"here", "--where", "frequency_other=0"}),
            "ngrex-table: the column frequency_other needs --compare FILE");
  EXPECT_EQ(error({"here", "--columns", "per_million_other"}),
            "ngrex-table: the column per_million_other needs --compare FILE");
  EXPECT_EQ(
      error({"here", "--compare", "there", "--format", "ucs"}),
      "ngrex-table: --format ucs does not go with --compare, as it has no place for pairs that only one file has");
  EXPECT_TRUE(error({"here", "--compare", "there", "--within", "relation"})
                  .starts_with("ngrex-table: --within does not go with --compare, with which there are --output, "));
  EXPECT_EQ(error({"here", "--compare", "there", "-o", "there"}), "ngrex-table: output there is also an input");
  EXPECT_EQ(error({"here", "--where", "lemma1 in there", "-o", "there"}), "ngrex-table: output there is also an input");
}

TEST_F(CompareTest, NamesTheFileThatIsDamaged) {
  folder.write("cut", _pair("a", "b", 1, 100));
  const std::string ends =
      ": line 6: the file ends here, but an output datafile ends with the empty line of its last N-gram and one more; ";
  const ToolResult other = run({"here", "--compare", "cut"});
  EXPECT_EQ(other.status, 1);
  EXPECT_EQ(other.out, "");
  EXPECT_EQ(other.err, "ngrex-table: cut" + ends + "there is no table\n");
  const ToolResult file = run({"cut", "--compare", "here", "--columns", "lemma1"});
  EXPECT_EQ(file.status, 1);
  EXPECT_EQ(file.out, "lemma1\na\n");
  EXPECT_EQ(file.err, "ngrex-table: cut" + ends + "the table ends here\n");
}

}  // namespace
}  // namespace colx::cli
