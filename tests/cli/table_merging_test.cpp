#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/cli/tool_runner.h"

namespace colx::cli {
namespace {

std::string _counted_pair(const std::string& first, const std::string& second, unsigned f, unsigned total) {
  return "1\t" + first + "\n2\t" + second + "\n" + std::to_string(total - f) + "\t0\t0\t" + std::to_string(f) +
         "\n1\t1\t1\t1\t1\t1\n\n";
}

// "heavy" before and behind the word that it modifies, with two tags, among ten pairs.
const std::string pairs_of_rain = _counted_pair("heavy\tA\t2\tAtr", "rain\tN\t0\tHead", 3, 10) +
                                  _counted_pair("rain\tN\t0\tHead", "heavy\tB\t1\tAtr", 2, 10) +
                                  _counted_pair("rain\tN\t2\tSb", "fall\tV\t0\tHead", 4, 10) +
                                  _counted_pair("old\tA\t2\tAtr", "rain\tN\t0\tHead", 1, 10) + "\n";

std::string _table(const std::vector<std::string>& arguments) {
  const ToolResult result = run_tool("ngrex-table", arguments, pairs_of_rain);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  return result.out;
}

TEST(TableMerging, PrintsWhatItAddedUpWithoutTheMeasuresOfTheFile) {
  EXPECT_EQ(
      _table({"--merge", "order,tag"}),
      "rank\tlemma1\tlemma2\ttag1\ttag2\tparent1\tparent2\trelation1\trelation2\tfrequency\tmarginal1\tmarginal2\t"
      "total\n"
      "1\theavy\train\t*\t*\t2\t0\tAtr\tHead\t5\t5\t6\t10\n"
      "2\train\tfall\t*\t*\t2\t0\tSb\tHead\t4\t4\t4\t10\n"
      "3\told\train\t*\t*\t2\t0\tAtr\tHead\t1\t1\t6\t10\n");
  EXPECT_EQ(_table({"--merge=relation", "--columns=lemma,tag,relation1,frequency", "--pattern"}),
            "lemma1\tlemma2\ttag1\ttag2\trelation1\tfrequency\tpattern\n"
            "heavy\train\tA\tN\t*\t3\theavy <* rain\n"
            "rain\theavy\tN\tB\tHead\t2\train *> heavy\n"
            "rain\tfall\tN\tV\t*\t4\train <* fall\n"
            "old\train\tA\tN\t*\t1\told <* rain\n");
}

TEST(TableMerging, MakesTablesWithinRelations) {
  const std::vector<std::string> columns = {"--columns=lemma,cell,total,logDice", "--merge", "order,tag"};
  const auto with = [&](const std::string& within) {
    std::vector<std::string> arguments = columns;
    arguments.push_back("--within=" + within);
    return _table(arguments);
  };
  const std::string header = "lemma1\tlemma2\tcell0\tcell1\tcell2\tcell3\ttotal\tlogDice\n";
  EXPECT_EQ(with("relation"), header +
                                  "heavy\train\t0\t1\t0\t5\t6\t13.86249648\n"
                                  "rain\tfall\t0\t0\t0\t4\t4\t14\n"
                                  "old\train\t0\t5\t0\t1\t6\t12.19264508\n");
  EXPECT_EQ(with("head-relation"), header +
                                       "heavy\train\t4\t1\t0\t5\t10\t13.86249648\n"
                                       "rain\tfall\t6\t0\t0\t4\t10\t14\n"
                                       "old\train\t4\t5\t0\t1\t10\t12.19264508\n");
}

TEST(TableMerging, WritesPairTypesForUcs) {
  EXPECT_EQ(_table({"--format=ucs", "--measures=logDice,min_sensitivity"}),
            "id\tl1\tl2\tf\tf1\tf2\tN\tam.logDice\tam.min.sensitivity\n"
            "1\theavy\train\t5\t5\t6\t10\t13.86249648\t0.8333333333\n"
            "2\train\tfall\t4\t4\t4\t10\t14\t1\n"
            "3\told\train\t1\t1\t6\t10\t12.19264508\t0.1666666667\n");
  EXPECT_EQ(_table({"--format=ucs", "--within=relation", "--where=relation1=Atr"}),
            "id\tl1\tl2\tf\tf1\tf2\tN\trelation1\n"
            "1\theavy\train\t5\t5\t6\t6\tAtr\n"
            "2\told\train\t1\t1\t6\t6\tAtr\n");
  EXPECT_EQ(run_tool("ngrex-table", {"--format=ucs"}, "\n").out, "id\tl1\tl2\tf\tf1\tf2\tN\n");
}

TEST(TableMerging, ChoosesAndSortsMergedRowsAndKeepsTheirMargins) {
  EXPECT_EQ(_table({"--merge=order,tag", "--sort=+frequency", "--min-frequency=2", "--where", "lemma2=rain",
                    "--columns=rank,lemma,marginal,total"}),
            "rank\tlemma1\tlemma2\tmarginal1\tmarginal2\ttotal\n1\theavy\train\t5\t6\t10\n");
  EXPECT_EQ(_table({"--merge=order,tag", "--sort=logDice", "--top=2", "--columns=lemma,logDice", "--format=jsonl"}),
            "{\"lemma1\":\"rain\",\"lemma2\":\"fall\",\"logDice\":14}\n"
            "{\"lemma1\":\"heavy\",\"lemma2\":\"rain\",\"logDice\":13.86249648}\n");
}

TEST(TableMerging, RefusesAFileThatLacksPairs) {
  const ToolResult result =
      run_tool("ngrex-table", {"--merge=tag"}, pairs_of_rain.substr(pairs_of_rain.find("\n\n") + 2));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "ngrex-table: standard input: the frequencies of its pairs add up to 7 of 10, so pairs are missing, and "
            "margins cannot be counted anew; run ngrex without a filter, sieve or threshold (-f, -tf, -te, -tc, -tl, "
            "-tm, -tp, -tt, -tz), and choose rows here with --where and --min-frequency; there is no table\n");
}

TEST(TableMerging, RefusesWhatMergedRowsDoNotHave) {
  const std::string own =
      "chi_square is of the pairs as the file has them; rows made by --merge, --within or the format ucs have "
      "the measures of --measures";
  const std::vector<std::pair<std::vector<std::string>, std::string>> wrong = {
      {{"--merge=tag", "--columns=lemma,chi_square"}, own},
      {{"--within=relation", "--sort=chi_square"}, own},
      {{"--within=relation", "--where=chi_square>3"}, own},
      {{"--format=ucs", "--columns=chi_square"}, own},
      {{"--merge=tag", "--where=tag1=A"}, "rows cannot be chosen or sorted by tag1, which --merge drops"},
      {{"--format=ucs", "--sort=relation2"},
       "rows cannot be chosen or sorted by relation2, which --merge or the format ucs drops; --within relation keeps "
       "it"},
      {{"--within=relation", "--merge=relation"}, "--merge relation leaves no relation that --within could go by"},
      {{"--merge=tag,lemma"}, "--merge takes order, tag and relation, separated by commas, not \"lemma\""},
      {{"--within=head"}, "--within takes relation or head-relation, not \"head\""}};
  for (const auto& [arguments, complaint] : wrong) {
    const ToolResult result = run_tool("ngrex-table", arguments, pairs_of_rain);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.substr(0, result.err.find('\n')), "ngrex-table: " + complaint);
  }
}

}  // namespace
}  // namespace colx::cli
