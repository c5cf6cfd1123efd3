// Tables of contexts files and statistics files, and the options that go with them.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "companion/output.h"
#include "table/options.h"
#include "table/table.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

using Words = std::vector<std::string>;

const std::string contexts =
    "1\tcold\tA\t2\tAtr\n2\train\t\t0\tHead\n\nfall\tV\t1\n\nrain\tN\t3\nfall\tV\t2\n\n\n"
    "1\t*\n2\train\t\t0\tHead\n\nfall\tV\t4\n\n\n\n";

const std::string statistics =
    "Statistics for datafile a\tb:\n# of words: 6\n# of sentences: 2\n# of 2-grams extracted: 4\n\n"
    "Overall datafiles statistics:\n# of words: 6\n# of sentences: 2\n# of 2-grams extracted: 4\n\n"
    "Strings storage statistics:\n# of unique lemmas: 6\n# of unique tags: 3\n\n"
    "2-grams storage statistics:\n# of unique 2-grams of type 0: 1\n# of unique 2-grams of type 1: 4\n"
    "# of unique 2-grams of type 2: 4\n# of unique 2-grams of type 3: 6\n\n";

std::string _table(const std::string& option, const std::string& content, Words arguments) {
  const test::TemporaryFolder folder;
  arguments.push_back(option + "=" + folder.write("x", content));
  TextOutput output;
  write_table(parse_options(arguments), output, false, false);
  return output.text();
}

std::string _contexts(const Words& arguments) {
  return _table("--contexts", contexts, arguments);
}

std::string _statistics(const Words& arguments) {
  return _table("--statistics", statistics, arguments);
}

TEST(ContextsTable, HasARowForEveryContextWord) {
  EXPECT_EQ(
      _contexts({}),
      "type\tlemma1\tlemma2\ttag1\ttag2\tparent1\tparent2\trelation1\trelation2\tword\tword_tag\trole\tfrequency\n"
      "3\tcold\train\tA\t\t2\t0\tAtr\tHead\tfall\tV\tnarrow\t1\n"
      "3\tcold\train\tA\t\t2\t0\tAtr\tHead\train\tN\twide\t3\n"
      "3\tcold\train\tA\t\t2\t0\tAtr\tHead\tfall\tV\twide\t2\n"
      "1\t*\train\t*\t\tNA\t0\t*\tHead\tfall\tV\twide\t4\n");
  EXPECT_EQ(_contexts({"--format=jsonl", "--columns=parent,word,role", "--json-numbers=strings"}),
            "{\"parent1\":2,\"parent2\":0,\"word\":\"fall\",\"role\":\"narrow\"}\n"
            "{\"parent1\":2,\"parent2\":0,\"word\":\"rain\",\"role\":\"wide\"}\n"
            "{\"parent1\":2,\"parent2\":0,\"word\":\"fall\",\"role\":\"wide\"}\n"
            "{\"parent1\":\"NA\",\"parent2\":0,\"word\":\"fall\",\"role\":\"wide\"}\n");
}

TEST(ContextsTable, ChoosesColumnsAndRows) {
  EXPECT_EQ(_contexts({"--columns=word,frequency,word", "--min-frequency=3"}), "word\tfrequency\nrain\t3\nfall\t4\n");
  EXPECT_EQ(_contexts({"--columns=word,frequency", "--min-frequency=3", "--top=1"}), "word\tfrequency\nrain\t3\n");
  EXPECT_EQ(_contexts({"--columns=parent1", "--na=?", "--format=csv", "--bom"}),
            "\xEF\xBB\xBFparent1\r\n2\r\n2\r\n2\r\n?\r\n");
  EXPECT_EQ(_contexts({"--columns=lemma", "--top=0"}), "lemma1\tlemma2\n");
  EXPECT_THROW(_contexts({"--columns=lemma3"}), usage_error);
  EXPECT_THROW(_contexts({"--columns=lemma2x"}), usage_error);
  EXPECT_THROW(_contexts({"--columns=marginal1"}), usage_error);
}

TEST(ContextsTable, HasAHeaderWithoutNGramsWhenEveryColumnIsNamed) {
  EXPECT_EQ(_table("--contexts", "\n", {}), "");
  EXPECT_EQ(_table("--contexts", "\n", {"--columns=lemma,word"}), "");
  EXPECT_EQ(_table("--contexts", "\n", {"--columns=lemma1,word"}), "lemma1\tword\n");
}

TEST(StatisticsTable, HasARowForEveryDatafileAndOneForAll) {
  EXPECT_EQ(_statistics({"--format=csv"}),
            "scope,datafile,n,words,sentences,extracted,passed,filtered\r\n"
            "datafile,a\tb,2,6,2,4,NA,NA\r\noverall,,2,6,2,4,NA,NA\r\n");
  EXPECT_EQ(_statistics({"--format=markdown", "--columns=scope,passed", "--top=1"}),
            "| scope | passed |\n|---|---:|\n| datafile | NA |\n");
  EXPECT_THROW(_statistics({"--columns=lemma"}), usage_error);
}

TEST(StatisticsTable, RefusesNamesForWhichTsvHasNoPlace) {
  EXPECT_THROW(_statistics({}), input_error);
  EXPECT_EQ(_statistics({"--format=jsonl", "--columns=datafile", "--top=1"}), "{\"datafile\":\"a\\u0009b\"}\n");
}

// Every option but those whose effect is shown above is refused, with a sentence that names it.
TEST(FlatTables, RefuseEveryOptionThatWouldDoNothing) {
  const Words shown = {"output", "columns", "top", "format", "na", "bom", "json-numbers", "help", "version"};
  for (const std::string mode : {"contexts", "statistics"}) {
    for (const OptionEntry& entry : program.options) {
      const std::string key(entry.key());
      if (key == mode || std::find(shown.begin(), shown.end(), key) != shown.end()) continue;
      if (mode == "contexts" && key == "min-frequency") continue;
      Words arguments = {"--" + mode, "file", "--" + key};
      if (!entry.value.empty()) arguments.emplace_back("1");
      try {
        parse_options(arguments);
        ADD_FAILURE() << mode << " with " << key;
      } catch (const usage_error& error) {
        EXPECT_TRUE(std::string(error.what()).find("--" + key) != std::string::npos) << error.what();
        EXPECT_TRUE(std::string(error.what()).find(" does not go with --") != std::string::npos) << error.what();
      }
    }
    EXPECT_THROW(parse_options({"--" + mode, "file", "another"}), usage_error);
    EXPECT_THROW(_table("--" + mode, "\n", {"--format=ucs"}), usage_error);
    EXPECT_NE(parse_options({"--" + mode, "file", "--sort=lemma1", "--help"}).information, "");
  }
}

}  // namespace
}  // namespace colx::table
