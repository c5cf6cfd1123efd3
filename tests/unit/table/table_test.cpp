#include "table/table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

using Words = std::vector<std::string>;

std::string _pair(const std::string& a, const std::string& b, std::uint32_t f, const std::string& x = "1") {
  return "1\t" + a + "\tA\t2\tAtr\n2\t" + b + "\tN\t0\tHead\n9\t1\t1\t" + std::to_string(f) + "\n" + x +
         "\tinf\t-inf\t0.5\t1\t2\n\n";
}

std::string _table(const std::string& content, Words arguments) {
  const test::TemporaryFolder folder;
  arguments.push_back(folder.write("out", content));
  TextOutput output;
  write_table(parse_options(arguments), output, false, false);
  return output.text();
}

TEST(Table, WritesSpecialValuesAsDocumented) {
  const std::string content = _pair("a\"", "b,", 3, "-nan") + "\n";
  const Words columns = {"--columns", "lemma,chi_square,log_likelihood,mutual_information,pearson"};
  const auto with = [&](const std::string& format) {
    Words arguments = columns;
    arguments.push_back("--format=" + format);
    return _table(content, arguments);
  };
  const std::string tabs = "lemma1\tlemma2\tchi_square\tlog_likelihood\tmutual_information\tpearson\n";
  EXPECT_EQ(with("tsv"), tabs + "a\"\tb,\tNA\tInf\t-Inf\t0.5\n");
  EXPECT_EQ(
      with("csv"),
      "lemma1,lemma2,chi_square,log_likelihood,mutual_information,pearson\r\n\"a\"\"\",\"b,\",NA,Inf,-Inf,0.5\r\n");
  EXPECT_EQ(with("jsonl"),
            "{\"lemma1\":\"a\\\"\",\"lemma2\":\"b,\",\"chi_square\":null,\"log_likelihood\":null,"
            "\"mutual_information\":null,\"pearson\":0.5}\n");
}

TEST(Table, SpellsSpecialValuesAsAsked) {
  const std::string content = _pair("NA", "b", 3, "-nan") + "\n";
  const auto with = [&](const std::string& format, const std::string& option) {
    return _table(content,
                  {"--columns=lemma1,chi_square,log_likelihood,mutual_information", "--format=" + format, option});
  };
  const std::string header = "lemma1\tchi_square\tlog_likelihood\tmutual_information\n";
  EXPECT_EQ(with("tsv", "--na="), header + "NA\t\tInf\t-Inf\n");
  EXPECT_EQ(with("tsv", "--na=\"x\""), header + "NA\t\"x\"\tInf\t-Inf\n");
  EXPECT_TRUE(with("csv", "--na=\"x\"").ends_with("\r\nNA,\"\"\"x\"\"\",Inf,-Inf\r\n"));
  EXPECT_TRUE(with("markdown", "--na=*").ends_with("\n| NA | \\* | Inf | -Inf |\n"));
  EXPECT_TRUE(with("table", "--na=-").ends_with("\nNA               -             Inf                -Inf\n"));
  EXPECT_EQ(with("jsonl", "--json-numbers=strings"),
            "{\"lemma1\":\"NA\",\"chi_square\":\"NA\",\"log_likelihood\":\"Inf\",\"mutual_information\":\"-Inf\"}\n");
  EXPECT_EQ(with("jsonl", "--json-numbers=null"),
            "{\"lemma1\":\"NA\",\"chi_square\":null,\"log_likelihood\":null,\"mutual_information\":null}\n");
}

TEST(Table, NotANumberKeepsItsNameInConditions) {
  EXPECT_EQ(_table(_pair("a", "b", 3, "-nan") + "\n", {"--columns=lemma1", "--na=-", "--where=chi_square=NA"}),
            "lemma1\na\n");
}

TEST(Table, BeginsCsvWithAByteOrderMarkWhenAsked) {
  EXPECT_EQ(_table(_pair("\xC3\xA9", "b", 3) + "\n", {"--columns=lemma1", "--format=csv", "--bom"}),
            "\xEF\xBB\xBFlemma1\r\n\xC3\xA9\r\n");
}

TEST(Table, RefusesWhatAFormatHasNoUseFor) {
  const std::string content = _pair("a", "b", 3) + "\n";
  for (const Words& wrong : std::vector<Words>{{"--na=-", "--format=jsonl"},
                                               {"--bom"},
                                               {"--bom", "--format=jsonl"},
                                               {"--json-numbers=strings"},
                                               {"--json-numbers=null", "--format=csv"},
                                               {"--json-numbers=both", "--format=jsonl"},
                                               {"--na=a\tb"},
                                               {"--na=a\n"}})
    EXPECT_THROW(_table(content, wrong), usage_error) << wrong[0];
}

TEST(Table, MakesTreesReadable) {
  EXPECT_EQ(_table(_pair("heavy", "rain", 1) + "\n", {"--columns=pattern"}), "pattern\nheavy <Atr rain\n");
  const std::string triple =
      "1\tpay\t\t0\tHead\n2\tattention\t\t1\tObj\n3\tto\t\t1\tAuxP\n1\t0\t0\t0\t0\t0\t0\t1\n1\t1\n\n\n";
  EXPECT_EQ(_table(triple, {"--columns=pattern"}), "pattern\npay Obj> attention AuxP:1> to\n");
}

TEST(Table, FiltersByEqualityExpressionAndFrequency) {
  const std::string content = _pair("a", "rain", 3) + _pair("b", "rain", 2) + _pair("ab", "snow", 5) + "\n";
  EXPECT_EQ(_table(content, {"--columns=rank,lemma1", "--where", "lemma2=rain"}), "rank\tlemma1\n1\ta\n2\tb\n");
  EXPECT_EQ(_table(content, {"--columns=lemma1", "--where", "lemma1~^a", "--min-frequency=4"}), "lemma1\nab\n");
  EXPECT_EQ(_table(content, {"--columns=lemma1", "--where=frequency=2", "--where=log_likelihood=Inf"}), "lemma1\nb\n");
}

TEST(Table, ComparesNumbersInConditions) {
  const std::string content = _pair("a", "b", 3, "-nan") + _pair("c", "d", 2, "7.5") + _pair("e", "f", 5, "inf") + "\n";
  const auto lemmas = [&](const std::string& condition) {
    std::string rows = _table(content, {"--columns=lemma1", "--where", condition}).substr(7);
    rows.erase(std::remove(rows.begin(), rows.end(), '\n'), rows.end());
    return rows;
  };
  EXPECT_EQ(lemmas("frequency>=3"), "ae");
  EXPECT_EQ(lemmas("frequency>3"), "e");
  EXPECT_EQ(lemmas("frequency<=3"), "ac");
  EXPECT_EQ(lemmas("frequency<3"), "c");
  EXPECT_EQ(lemmas("frequency!=3"), "ce");
  EXPECT_EQ(lemmas("chi_square>=7.5"), "ce");
  EXPECT_EQ(lemmas("chi_square<=7.5"), "c");
  EXPECT_EQ(lemmas("chi_square!=NA"), "ce");
  EXPECT_EQ(lemmas("lemma1!=a"), "ce");
  EXPECT_EQ(lemmas("lemma1!~[ac]"), "e");
  EXPECT_EQ(lemmas("lemma1=="), "");
  EXPECT_THROW(lemmas("lemma1>a"), usage_error);
  EXPECT_THROW(lemmas("lemma1!a"), usage_error);
  EXPECT_THROW(lemmas("frequency>x"), usage_error);
}

TEST(Table, AddsToTheColumnsAndPrintsNoneTwice) {
  EXPECT_EQ(_table(_pair("a", "b", 3) + "\n", {"--columns=lemma1,lemma,MI", "--measures=MI,Dice", "--pattern"}),
            "lemma1\tlemma2\tMI\tDice\tpattern\na\tb\t1.392317423\t0.75\ta <Atr b\n");
}

TEST(Table, SortsBySeveralColumnsTextsUpwardsAndNumbersDownwardsUnlessSigned) {
  const std::string content =
      _pair("b", "x", 1) + _pair("a", "y", 2) + _pair("b", "y", 3) + _pair("a", "x", 4) + _pair("ab", "x", 4) + "\n";
  const auto rows = [&](const std::string& order) {
    std::string table = _table(content, {"--columns=lemma,frequency", "--sort", order}).substr(24);
    std::erase(table, '\t');
    std::replace(table.begin(), table.end(), '\n', ' ');
    return table;
  };
  EXPECT_EQ(rows("lemma1,frequency"), "ax4 ay2 abx4 by3 bx1 ");
  EXPECT_EQ(rows("+lemma1,+frequency"), "ay2 ax4 abx4 bx1 by3 ");
  EXPECT_EQ(rows("-lemma1,-frequency"), "by3 bx1 abx4 ax4 ay2 ");
  EXPECT_EQ(rows("lemma2,-lemma1"), "bx1 abx4 ax4 by3 ay2 ");
  EXPECT_EQ(rows("frequency"), "ax4 abx4 by3 ay2 bx1 ");
  EXPECT_EQ(rows("relation1,tag2,+frequency"), "bx1 ay2 by3 ax4 abx4 ");
  for (const std::string wrong : {"", ",", "lemma1,", "lemma1,rank", "++lemma1", "lemma", "lemma3"})
    EXPECT_THROW(rows(wrong), usage_error) << wrong;
}

TEST(Table, MakesGroupsByTheirSizeOrName) {
  const std::string content = _pair("a", "x", 1) + _pair("b", "y", 2) + _pair("c", "x", 3) + _pair("d", "y", 4) +
                              _pair("e", "x", 5) + _pair("f", "z", 6) + "\n";
  const auto rows = [&](Words arguments) {
    arguments.insert(arguments.begin(), "--columns=rank,lemma1");
    std::string table = _table(content, arguments).substr(12);
    std::erase(table, '\t');
    std::replace(table.begin(), table.end(), '\n', ' ');
    return table;
  };
  // x has 9 occurrences, y and z have 6 each.
  EXPECT_EQ(rows({"--per=lemma2"}), "1e 2c 3a 4d 5b 6f ");
  EXPECT_EQ(rows({"--per=lemma2", "--top=1"}), "1e 2d 3f ");
  EXPECT_EQ(rows({"--per=lemma2", "--top=2", "--sort=+frequency"}), "1a 2c 3b 4d 5f ");
  EXPECT_EQ(rows({"--per=lemma2", "--where=lemma2!=x", "--groups=name"}), "1d 2b 3f ");
  EXPECT_EQ(rows({"--per=lemma2", "--min-frequency=4"}), "1f 2e 3d ");
  EXPECT_EQ(rows({"--per=relation1,lemma2", "--groups=name", "--sort=lemma1", "--top=2"}), "1a 2c 3b 4d 5f ");
  EXPECT_EQ(rows({"--per=lemma2", "--top=0"}), "");
  for (const std::string wrong :
       {"--per=", "--per=lemma2,", "--per=rank", "--per=lemma9", "--per=lemma3", "--groups=x"})
    EXPECT_THROW(rows({wrong}), usage_error) << wrong;
}

TEST(Table, SortsNotANumberLastAndZeroBytesAsBytes) {
  const std::string zero(1, '\0');
  const std::string content = _pair("a" + zero + "b", "r", 1, "-nan") + _pair("a", "s", 1, "inf") +
                              _pair("a" + zero, "t", 1, "-inf") + _pair("ab", "u", 1, "-0.5") +
                              _pair("a\x01", "v", 1, "7") + _pair("a\xff", "w", 1, "0") + "\n";
  const auto order = [&](const std::string& key) {
    std::string table = _table(content, {"--columns=lemma2", "--sort", key}).substr(7);
    std::erase(table, '\n');
    return table;
  };
  EXPECT_EQ(order("chi_square"), "svwutr");
  EXPECT_EQ(order("+chi_square"), "tuwvsr");
  EXPECT_EQ(order("lemma1"), "strvuw");
  EXPECT_EQ(order("-lemma1"), "wuvrts");
}

TEST(Table, TakesTheMemoryOfSortsInTheUnitsOfSizes) {
  const auto memory = [](const std::string& size) { return parse_options({"--memory", size}).memory; };
  EXPECT_EQ(memory("100"), 100U);
  EXPECT_EQ(memory("3K"), 3072U);
  EXPECT_EQ(memory("256M"), 256U << 20);
  EXPECT_EQ(memory("2G"), std::size_t{2} << 30);
  for (const std::string wrong : {"", "M", "0", "-1", "1.5G", "2GB", "2X", "99999999999T"})
    EXPECT_THROW(memory(wrong), usage_error) << wrong;
}

TEST(Table, SortsEqualMeasuresByTheirWordsWhateverTheirRounding) {
  // Three times as many occurrences of the first word, and of all three: the same MI, but 24.118539673357503 is
  // computed for the one and 24.1185396733575 for the other (with long doubles of 80 bits).
  const auto block = [](const std::string& lemma, unsigned f, unsigned f1) {
    const unsigned f2 = 78;
    const unsigned f3 = 181;
    const unsigned none = 1000003 - f - (f1 - f) - (f2 - f) - (f3 - f);
    std::string cells;
    for (const unsigned cell : {none, f3 - f, f2 - f, 0U, f1 - f, 0U, 0U})
      cells += std::to_string(cell) + "\t";
    return "1\t" + lemma + "\tA\t2\tAtr\n2\tx\tN\t0\tHead\n3\ty\tN\t2\tObj\n" + cells + std::to_string(f) +
           "\n1\t1\n\n";
  };
  for (const std::string order : {"MI", "+MI"}) {
    EXPECT_EQ(_table(block("b", 9, 35) + block("a", 27, 105) + "\n", {"--columns=lemma1", "--sort", order}),
              "lemma1\na\nb\n");
    EXPECT_EQ(_table(block("a", 9, 35) + block("b", 27, 105) + "\n", {"--columns=lemma1", "--sort", order}),
              "lemma1\na\nb\n");
  }
}

TEST(Table, EscapesWhatMarkdownWouldTakeForItsOwn) {
  EXPECT_EQ(_table(_pair("a|b", "*c*_d_", 3) + "\n", {"--columns=lemma,frequency", "--format=markdown"}),
            "| lemma1 | lemma2 | frequency |\n|---|---|---:|\n| a\\|b | \\*c\\*\\_d\\_ | 3 |\n");
}

TEST(Table, MakesJsonOfBytesThatAreNoUtf8) {
  EXPECT_EQ(_table(_pair("a\xff\xc3\xa9\xe2\x82", "\x01\"\\", 3) + "\n", {"--columns=lemma", "--format=jsonl"}),
            "{\"lemma1\":\"a\xef\xbf\xbd\xc3\xa9\xef\xbf\xbd\xef\xbf\xbd\",\"lemma2\":\"\\u0001\\\"\\\\\"}\n");
}

TEST(Table, AlignsColumnsAndKeepsControlCharactersFromTheTerminal) {
  EXPECT_EQ(
      _table(_pair("long", "b\x1b", 3) + _pair("a", "c", 12) + "\n", {"--columns=lemma,frequency", "--format=table"}),
      "lemma1  lemma2  frequency\nlong    b?              3\na       c              12\n");
}

TEST(Table, HasAHeaderWithoutNGramsWhereItsColumnsAreKnown) {
  EXPECT_EQ(_table("\n", {}), "");
  EXPECT_EQ(_table("\n", {"--columns=lemma"}), "");
  EXPECT_EQ(_table("\n", {"--columns=lemma1,frequency", "--measures=G2"}), "lemma1\tfrequency\tG2\n");
  EXPECT_EQ(_table("\n", {"--format=ucs"}), "id\tl1\tl2\tf\tf1\tf2\tN\n");
}

TEST(Table, ComputedMeasuresHaveTenDigitsOrAsManyAsAsked) {
  // Cells 9 1 1 3: E = 4 * 4 / 14 and MI = log2(3 * 14 / 16) = log2(2.625) = 1.3923174227787603...
  const std::string content = _pair("a", "b", 3) + "\n";
  EXPECT_EQ(_table(content, {"--columns=MI"}), "MI\n1.392317423\n");
  EXPECT_EQ(_table(content, {"--columns=MI", "--precision", "3"}), "MI\n1.39\n");
  EXPECT_DOUBLE_EQ(std::stod(_table(content, {"--columns=MI", "--precision", "17"}).substr(3)), std::log2(2.625));
  EXPECT_THROW(_table(content, {"--precision", "0"}), usage_error);
  EXPECT_THROW(_table(content, {"--precision", "18"}), usage_error);
}

TEST(Table, ConditionsSeeAllDigitsWhateverIsPrinted) {
  // MI = 1.3923174227787603..., see above, and 9 1 1 2: E = 3 * 3 / 13 and MI = log2(2 * 13 / 9) = 1.53051...
  const std::string content = _pair("a", "b", 3) + _pair("c", "d", 2) + "\n";
  const auto lemmas = [&](const std::string& condition, const std::string& digits) {
    return _table(content, {"--columns=lemma1", "--where", condition, "--precision", digits}).substr(7);
  };
  for (const std::string digits : {"1", "2", "10", "17"}) {
    EXPECT_EQ(lemmas("MI>1.4", digits), "c\n");
    EXPECT_EQ(lemmas("MI>=1.39231742", digits), "a\nc\n");
    EXPECT_EQ(lemmas("MI<1.3923174228", digits), "a\n");
    EXPECT_EQ(lemmas("MI=1.392317423", digits), "");
    EXPECT_EQ(lemmas("MI~23$", digits), "a\n");
    EXPECT_EQ(lemmas("per_million<150000", digits), "");
    EXPECT_EQ(lemmas("per_million>=153846.153", digits), "a\nc\n");
  }
}

TEST(Table, HasPairTypesAndMeasuresOfPairsForPairsOnly) {
  const std::string triple =
      "1\tpay\t\t0\tHead\n2\tattention\t\t1\tObj\n3\tto\t\t1\tAuxP\n1\t0\t0\t0\t0\t0\t0\t1\n1\t1\n\n\n";
  EXPECT_THROW(_table(triple, {"--format=ucs"}), usage_error);
  EXPECT_THROW(_table(triple, {"--measures=Fisher"}), usage_error);
}

TEST(Table, TopRowsAreTheHeadOfTheSortedTableUnderAnyShuffle) {
  test::Random random;
  for (int round = 0; round < 60; ++round) {
    std::vector<std::string> blocks;
    for (std::uint32_t i = 0; i < 40; ++i)
      blocks.push_back(_pair(random.text(2, "ab\xC3"), random.text(2, "xy"), random.below(4),
                             random.once_in(3) ? "-nan" : std::to_string(random.below(3))));
    const auto joined = [&] {
      std::string all;
      for (const std::string& block : blocks)
        all += block;
      return all + "\n";
    };
    for (const std::string order : {"chi_square", "+chi_square", "frequency", "+lemma1", "pattern"}) {
      // Rows with the same members may differ in their numbers, so only the sort column and the members are the same.
      const std::string shown = "--columns=lemma1,lemma2," + (order[0] == '+' ? order.substr(1) : order);
      const std::string full = _table(joined(), {shown, "--sort", order});
      std::istringstream lines(full);
      std::string head;
      std::string line;
      for (int k = 0; k < 8 && std::getline(lines, line); ++k)
        head += line + "\n";
      EXPECT_EQ(_table(joined(), {shown, "--sort", order, "--top=7"}), head);
      std::shuffle(blocks.begin(), blocks.end(), random.engine());
      EXPECT_EQ(_table(joined(), {shown, "--sort", order}), full);
    }
  }
}

TEST(Table, CsvReadsBackAsWritten) {
  test::Random random;
  for (int round = 0; round < 200; ++round) {
    const std::string a = random.text(6, "a,\"|\\\x01");
    const std::string b = random.text(6, "b,\"'\xC4\x8D");
    const std::string csv = _table(_pair(a, b, 1) + "\n", {"--columns=lemma1,lemma2", "--format=csv"});
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (std::size_t i = csv.find('\n') + 1; i < csv.size(); ++i) {
      if (csv[i] == '"' && quoted && csv[i + 1] == '"')
        fields.back() += csv[++i];
      else if (csv[i] == '"')
        quoted = !quoted;
      else if (csv[i] == ',' && !quoted)
        fields.emplace_back();
      else if (quoted || (csv[i] != '\r' && csv[i] != '\n'))
        fields.back() += csv[i];
    }
    EXPECT_EQ(fields, (std::vector<std::string>{a, b}));
    EXPECT_EQ(_table(_pair(a, b, 1) + "\n", {"--columns=lemma"}), "lemma1\tlemma2\n" + a + "\t" + b + "\n");
  }
}

}  // namespace
}  // namespace colx::table
