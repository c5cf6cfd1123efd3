#include "report/report_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "rows/block_reader.h"

namespace colx::report {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Shorts = std::vector<std::uint16_t>;
using Numbers32 = std::vector<std::uint32_t>;

// Three pairs, of which the first and the last have the same contingency table.
const std::vector<std::string> pairs = {"1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t2\n1\t1\t1\t1\t1\t1\n\n",
                                        "1\train\tN\t2\tSb\n2\tfall\tV\t0\tHead\n5\t0\t2\t1\n1\t1\t1\t1\t1\t1\n\n",
                                        "1\tcold\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t2\n1\t1\t1\t1\t1\t1\n\n"};

ReportRows _rows_of(const std::vector<std::string>& texts) {
  ReportRows rows(2, {table::find_association("Dice"), table::find_association("expected")});
  for (const std::string& text : texts) {
    table::Block block;
    table::Fault fault;
    EXPECT_EQ(parse_block(text, block, fault), table::ParseStatus::complete);
    rows.add(block);
  }
  return rows;
}

const Numbers& _numbers_of(const std::vector<Column>& columns, const std::string& name) {
  static const Numbers none;
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const Column& one) { return one.name == name; });
  EXPECT_NE(found, columns.end()) << name;
  return found == columns.end() ? none : found->numbers;
}

TEST(ReportRows, KeepTextsOnceAndWordsAsNumbers) {
  ReportRows rows = _rows_of(pairs);
  EXPECT_EQ(rows.rows(), 3U);
  const std::vector<Column> columns = rows.take_columns();
  EXPECT_EQ(bytes_of(columns[0]), "heavyrainfallcold");
  EXPECT_EQ(_numbers_of(columns, "lemmas.ends"), Numbers(Numbers32{5, 9, 13, 17}));
  EXPECT_EQ(_numbers_of(columns, "lemma1"), Numbers(Numbers32{0, 1, 3}));
  EXPECT_EQ(_numbers_of(columns, "lemma2"), Numbers(Numbers32{1, 2, 1}));
  EXPECT_EQ(_numbers_of(columns, "tag1"), Numbers(Shorts{0, 1, 0}));
  EXPECT_EQ(_numbers_of(columns, "parent1"), Numbers(Bytes{2, 2, 2}));
  EXPECT_EQ(_numbers_of(columns, "parent2"), Numbers(Bytes{0, 0, 0}));
  EXPECT_EQ(_numbers_of(columns, "relation1"), Numbers(Shorts{0, 2, 0}));
  EXPECT_EQ(_numbers_of(columns, "relation2"), Numbers(Shorts{1, 1, 1}));
}

TEST(ReportRows, KeepContingencyTablesOnceWithTheirMeasures) {
  ReportRows rows = _rows_of(pairs);
  EXPECT_EQ(rows.vectors(), 2U);
  const std::vector<Column> columns = rows.take_columns();
  EXPECT_EQ(_numbers_of(columns, "vector"), Numbers(Numbers32{0, 1, 0}));
  EXPECT_EQ(_numbers_of(columns, "cell0"), Numbers(Numbers32{4, 5}));
  EXPECT_EQ(_numbers_of(columns, "cell1"), Numbers(Numbers32{1, 0}));
  EXPECT_EQ(_numbers_of(columns, "cell2"), Numbers(Numbers32{1, 2}));
  EXPECT_EQ(_numbers_of(columns, "cell3"), Numbers(Numbers32{2, 1}));
  // 2 f / (f1 + f2): 4 / 6 and 2 / 4; f1 f2 / n: 9 / 8 and 3 / 8.
  EXPECT_EQ(_numbers_of(columns, "measure.Dice"), Numbers(std::vector<double>{2.0 / 3, 0.5}));
  EXPECT_EQ(_numbers_of(columns, "measure.expected"), Numbers(std::vector<double>{1.125, 0.375}));
}

TEST(ReportRows, TakeTextsThatDifferInBrokenBytesAloneForOne) {
  const std::string first = "1\ta\xFF\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t2\n1\t1\t1\t1\t1\t1\n\n";
  std::string second = first;
  second[3] = '\xFE';
  ReportRows rows = _rows_of({first, second});
  const std::vector<Column> columns = rows.take_columns();
  EXPECT_EQ(bytes_of(columns[0]), "a\uFFFDrain");
  EXPECT_EQ(_numbers_of(columns, "lemma1"), Numbers(Numbers32{0, 0}));
}

}  // namespace
}  // namespace colx::report
