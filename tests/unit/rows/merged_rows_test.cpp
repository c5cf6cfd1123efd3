#include "rows/merged_rows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/block_reader.h"
#include "rows/contingency.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

using Rows = std::vector<std::string>;

// A pair in a file of so many occurrences. Of the cells only the last and their sum matter here.
std::string _pair(const std::string& first, const std::string& second, unsigned f, unsigned total) {
  return "1\t" + first + "\n2\t" + second + "\n" + std::to_string(total - f) + "\t0\t0\t" + std::to_string(f) +
         "\n1\t1\t1\t1\t1\t1\n\n";
}

// Twenty occurrences: "heavy" with two tags, in two orders and two relations.
const std::string twenty =
    _pair("heavy\tA\t2\tAtr", "rain\tN\t0\tHead", 4, 20) + _pair("rain\tN\t0\tHead", "heavy\tA\t1\tAtr", 2, 20) +
    _pair("heavy\tA\t2\tAtr", "snow\tN\t0\tHead", 3, 20) + _pair("heavy\tB\t2\tAtr", "rain\tN\t0\tHead", 1, 20) +
    _pair("rain\tN\t2\tSb", "fall\tV\t0\tHead", 5, 20) + _pair("heavy\tA\t2\tAdv", "rain\tN\t0\tHead", 1, 20) +
    _pair("big\tA\t2\tAtr", "rain\tN\t0\tHead", 4, 20) + "\n";

// Every row as its words with tag and relation, and then its cells.
Rows _merged(const std::string& content, Merging merging) {
  const test::TemporaryFolder folder;
  BlockReader reader(folder.write("out", content));
  MergedRows rows(reader, "out", merging);
  Rows result;
  Block block;
  while (rows.next(block)) {
    const auto word = [&](std::size_t k) {
      const Member& member = block.members[k];
      return fmt::format("{}/{}/{}{}", member.lemma, member.tag, member.parent, member.relation);
    };
    result.push_back(fmt::format("{} {}: {} {} {} {}", word(0), word(1), block.cells[0], block.cells[1], block.cells[2],
                                 block.cells[3]));
  }
  EXPECT_FALSE(rows.next(block));
  return result;
}

std::string _complaint(const std::string& content) {
  try {
    _merged(content, {.order = true});
  } catch (const input_error& error) {
    return error.what();
  }
  return "";
}

TEST(MergedRows, OfOneOrderHaveTheDependentFirstAndMarginsOverBothOrders) {
  // heavy Atr rain: f = 4 + 2, of heavy Atr 4 + 2 + 3 and of rain as a head 4 + 2 + 1 + 1 + 4 among 20.
  EXPECT_EQ(_merged(twenty, {.order = true}),
            (Rows{"heavy/A/2Atr rain/N/0Head: 5 6 3 6", "heavy/A/2Atr snow/N/0Head: 11 0 6 3",
                  "heavy/B/2Atr rain/N/0Head: 8 11 0 1", "rain/N/2Sb fall/V/0Head: 15 0 0 5",
                  "heavy/A/2Adv rain/N/0Head: 8 11 0 1", "big/A/2Atr rain/N/0Head: 8 8 0 4"}));
}

TEST(MergedRows, WithoutTagsShowThemAsAStar) {
  // heavy Atr rain: f = 4 + 1, of heavy Atr before its head 4 + 3 + 1, of rain behind its dependent 4 + 1 + 1 + 4.
  EXPECT_EQ(_merged(twenty, {.tag = true}),
            (Rows{"heavy/*/2Atr rain/*/0Head: 7 5 3 5", "rain/*/0Head heavy/*/1Atr: 18 0 0 2",
                  "heavy/*/2Atr snow/*/0Head: 12 0 5 3", "rain/*/2Sb fall/*/0Head: 15 0 0 5",
                  "heavy/*/2Adv rain/*/0Head: 10 9 0 1", "big/*/2Atr rain/*/0Head: 10 6 0 4"}));
}

TEST(MergedRows, WithoutAnythingButLemmasAreTypesOfPairs) {
  // heavy rain: f = 4 + 2 + 1 + 1, of heavy that and the 3 of snow, of rain that and the 4 of big.
  EXPECT_EQ(_merged(twenty, {.order = true, .tag = true, .relation = true}),
            (Rows{"heavy/*/2* rain/*/0Head: 5 4 3 8", "heavy/*/2* snow/*/0Head: 9 0 8 3",
                  "rain/*/2* fall/*/0Head: 15 0 0 5", "big/*/2* rain/*/0Head: 8 8 0 4"}));
}

TEST(MergedRows, WithinARelationHaveItsMarginsAndItsTotal) {
  // Atr has 4 + 2 + 3 + 1 + 4 = 14. Before rain: of heavy 4 + 3, of rain 4 + 1 + 4.
  EXPECT_EQ(_merged(twenty, {.within = Within::relation}),
            (Rows{"heavy/A/2Atr rain/N/0Head: 2 5 3 4", "rain/N/0Head heavy/A/1Atr: 12 0 0 2",
                  "heavy/A/2Atr snow/N/0Head: 7 0 4 3", "heavy/B/2Atr rain/N/0Head: 5 8 0 1",
                  "rain/N/2Sb fall/V/0Head: 0 0 0 5", "heavy/A/2Adv rain/N/0Head: 0 0 0 1",
                  "big/A/2Atr rain/N/0Head: 5 5 0 4"}));
  // Both orders: of heavy 4 + 2 + 3, of rain 4 + 2 + 1 + 4.
  EXPECT_EQ(_merged(twenty, {.order = true, .within = Within::relation})[0], "heavy/A/2Atr rain/N/0Head: 0 5 3 6");
}

TEST(MergedRows, MayGiveTheRelationToTheHead) {
  // Of heavy in any relation 4 + 2 + 3 + 1, of rain in Atr 4 + 2 + 1 + 4, among 20.
  const Rows rows = _merged(twenty, {.order = true, .within = Within::head_relation});
  EXPECT_EQ(rows[0], "heavy/A/2Atr rain/N/0Head: 5 5 4 6");
  EXPECT_EQ(rows[4], "heavy/A/2Adv rain/N/0Head: 10 0 9 1");
}

TEST(MergedRows, AreBlocksThatCanBeParsedAgain) {
  const test::TemporaryFolder folder;
  BlockReader reader(folder.write("out", twenty));
  MergedRows rows(reader, "out", {.tag = true});
  Block block;
  int count = 0;
  for (; rows.next(block); ++count) {
    Block again;
    Fault fault;
    ASSERT_EQ(parse_block(block.text, again, fault), ParseStatus::complete) << fault.message;
    EXPECT_EQ(again.text, block.text);
    EXPECT_EQ(again.members_size, block.members_size);
    EXPECT_EQ(again.cells[3], block.cells[3]);
    EXPECT_EQ(again.members[1].lemma, block.members[1].lemma);
    EXPECT_EQ(again.measures[5], block.measures[5]);
  }
  EXPECT_EQ(count, 6);
}

TEST(MergedRows, NeedEveryPair) {
  EXPECT_EQ(_complaint(_pair("a\t\t2\tAtr", "b\t\t0\tHead", 3, 4) + "\n").substr(0, 78),
            "out: the frequencies of its pairs add up to 3 of 4, so pairs are missing, and ");
  EXPECT_EQ(
      _complaint(_pair("a\t\t2\tAtr", "b\t\t0\tHead", 4, 4) + _pair("a\t\t2\tAtr", "b\t\t0\tHead", 4, 4) + "\n"),
      "out: the frequencies of its pairs add up to 8, more than the total of 4 in their tables, as if several files "
      "had been joined");
  EXPECT_EQ(_complaint(_pair("a\t\t2\tAtr", "b\t\t0\tHead", 4, 4) + _pair("a\t\t2\tAtr", "b\t\t0\tHead", 4, 5) + "\n"),
            "out: the tables of its pairs have different totals, 4 and 5, as if several files had been joined");
  EXPECT_EQ(_complaint("\n"), "");
}

TEST(MergedRows, ArePairs) {
  EXPECT_THROW(
      _merged("1\ta\t\t0\tHead\n2\tb\t\t1\tObj\n3\tc\t\t1\tAuxP\n1\t0\t0\t0\t0\t0\t0\t1\n1\t1\n\n\n", {.order = true}),
      usage_error);
}

}  // namespace
}  // namespace colx::table
