#include "rows/compared_rows.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "rows/block_reader.h"
#include "rows/counterpart.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

// A pair that occurs `f` times of 100.
std::string _pair(const std::string& a, const std::string& b, unsigned f, const std::string& relation = "Atr") {
  return "1\t" + a + "\tA\t2\t" + relation + "\n2\t" + b + "\tN\t0\tHead\n" + std::to_string(100 - f) + "\t0\t0\t" +
         std::to_string(f) + "\n1\t2\t3\t4\t5\t6\n\n";
}

// What a comparison gives, one entry each, and how it fails.
struct Seen {
  std::vector<std::string> rows;  // lemmas, f, whether the file has it, f', n'
  std::string error;
};

Seen _compare(const std::string& content, const std::string& other) {
  const test::TemporaryFolder folder;
  Seen seen;
  try {
    BlockReader reader(folder.write("a", content));
    BlockReader other_reader(folder.write("b", other));
    ComparedRows rows(reader, "a", other_reader, "b");
    Block block;
    while (rows.next(block)) {
      const Counterpart counterpart = rows.counterpart_of_last();
      seen.rows.push_back(std::string(block.members[0].lemma) + " " + std::string(block.members[1].lemma) + " " +
                          std::to_string(block.cells[3]) + (counterpart.is_in_file ? " here " : " there ") +
                          std::to_string(counterpart.frequency) + " " + std::to_string(counterpart.total));
      Block again;
      Fault fault;
      EXPECT_EQ(parse_block(block.text, again, fault), ParseStatus::complete);
      EXPECT_EQ(rows.counterpart_of(again).frequency, counterpart.frequency);
    }
  } catch (const std::runtime_error& error) {
    seen.error = error.what();
  }
  return seen;
}

using Rows = std::vector<std::string>;

TEST(ComparedRows, GivesTheRowsOfTheFileAndThenThoseOfTheOtherOnly) {
  const Seen seen = _compare(_pair("a", "b", 3) + _pair("c", "", 2) + "\n",
                             _pair("e", "f", 5) + _pair("c", "", 7) + _pair("g", "h", 1) + "\n");
  EXPECT_EQ(seen.error, "");
  EXPECT_EQ(seen.rows, (Rows{"a b 3 here 0 100", "c  2 here 7 100", "e f 0 there 5 100", "g h 0 there 1 100"}));
}

TEST(ComparedRows, KnowsNGramsByAllFieldsOfTheirWords) {
  EXPECT_EQ(_compare(_pair("a", "b", 3) + "\n", _pair("a", "b", 4, "Sb") + _pair("b", "a", 5) + "\n").rows,
            (Rows{"a b 3 here 0 100", "a b 0 there 4 100", "b a 0 there 5 100"}));
}

TEST(ComparedRows, TakesFilesWithoutNGrams) {
  EXPECT_EQ(_compare("\n", _pair("a", "b", 3) + "\n").rows, Rows{"a b 0 there 3 100"});
  EXPECT_EQ(_compare(_pair("a", "b", 3) + "\n", "\n").rows, Rows{"a b 3 here 0 0"});
  EXPECT_EQ(_compare("\n", "\n").rows, Rows{});
}

TEST(ComparedRows, RefusesFilesThatCannotBeCompared) {
  const std::string triple = "1\ta\t\t2\tAtr\n2\tb\t\t0\tHead\n3\tc\t\t2\tObj\n1\t0\t0\t0\t0\t0\t0\t1\n1\t1\n\n\n";
  EXPECT_EQ(_compare(_pair("a", "b", 3) + "\n", triple).error,
            "a has N-grams of 2 words and b of 3: only those of one size can be compared");
  EXPECT_EQ(_compare("\n", _pair("a", "b", 3) + _pair("c", "d", 3) + _pair("a", "b", 4) + "\n").error,
            "b: the N-gram \"a <Atr b\" stands there twice");
  std::string other_total = _pair("c", "d", 3);
  other_total.replace(other_total.find("97"), 2, "98");
  const std::string joined =
      "the tables of its N-grams have different totals, 100 and 101, as if several files had been joined";
  EXPECT_EQ(_compare("\n", _pair("a", "b", 3) + other_total + "\n").error, "b: " + joined);
  EXPECT_EQ(_compare(_pair("a", "b", 3) + other_total + "\n", "\n").error, "a: " + joined);
}

TEST(ComparedRows, FindsEveryNGramOfMany) {
  std::string here = "";
  std::string there = "";
  Rows expected;
  for (unsigned i = 0; i < 3000; ++i) {
    const std::string lemma = "w" + std::to_string(i);
    here += _pair(lemma, "x", 1 + i % 90);
    if (i % 3 != 0) there = _pair(lemma, "x", 1 + i % 7) + there;
    expected.push_back(lemma + " x " + std::to_string(1 + i % 90) + " here " +
                       std::to_string(i % 3 == 0 ? 0 : 1 + i % 7) + " 100");
  }
  EXPECT_EQ(_compare(here + "\n", there + "\n").rows, expected);
}

TEST(Counterpart, KeynessIsTheSignedStatisticOfTheTwoByTwoTable) {
  // 2 (10 ln(10 / 5) + 90 ln(90 / 95) + 5 ln(5 / 10) + 195 ln(195 / 190)), of 15 in 300.
  const double g2 =
      2 * (10 * std::log(2.0) + 90 * std::log(90.0 / 95) + 5 * std::log(0.5) + 195 * std::log(195.0 / 190));
  EXPECT_NEAR(keyness(10, 100, {true, 5, 200}, Sign::of_excess), g2, 1e-12);
  EXPECT_NEAR(keyness(5, 200, {true, 10, 100}, Sign::of_excess), -g2, 1e-12);
  EXPECT_NEAR(keyness(5, 200, {true, 10, 100}, Sign::none), g2, 1e-12);
  EXPECT_EQ(keyness(5, 100, {true, 10, 200}, Sign::of_excess), 0);
  EXPECT_TRUE(std::isnan(keyness(0, 0, {true, 10, 200}, Sign::of_excess)));
  EXPECT_TRUE(std::isnan(keyness(1, 10, {true, 0, 0}, Sign::of_excess)));
}

TEST(Counterpart, LogRatioIsThatOfRelativeFrequencies) {
  EXPECT_EQ(keyness_log_ratio(10, 100, {true, 5, 200}), 2);
  EXPECT_EQ(keyness_log_ratio(5, 200, {true, 10, 100}), -2);
  EXPECT_EQ(keyness_log_ratio(1, 10, {true, 0, 200}), HUGE_VAL);
  EXPECT_EQ(keyness_log_ratio(0, 10, {true, 1, 200}), -HUGE_VAL);
  EXPECT_TRUE(std::isnan(keyness_log_ratio(0, 10, {true, 0, 200})));
  EXPECT_TRUE(std::isnan(keyness_log_ratio(1, 10, {true, 0, 0})));
  EXPECT_TRUE(std::isnan(keyness_log_ratio(0, 0, {true, 1, 10})));
  // Digits are kept where the two frequencies are nearly the same.
  constexpr std::uint64_t total = std::uint64_t{1} << 53;
  const double nearly = keyness_log_ratio((total >> 1) + 1, total, {true, total >> 1, total});
  EXPECT_NEAR(nearly / (std::ldexp(1.0, -52) / std::log(2.0)), 1, 1e-12);
}

}  // namespace
}  // namespace colx::table
