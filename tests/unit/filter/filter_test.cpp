#include "filter/filter.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

using Counts = std::vector<std::uint32_t>;
using Tags = std::vector<std::string>;

TEST(MatchSingleRule, ComparesOnlyTheCommonLength) {
  EXPECT_TRUE(match_single_rule("NN", "NNS"));
  EXPECT_TRUE(match_single_rule("NN-P", "NN"));
  EXPECT_FALSE(match_single_rule("NN-P", "NA"));
}

TEST(MatchSingleRule, LetsAnEmptyRuleOrItemThrough) {
  EXPECT_TRUE(match_single_rule("", "NN"));
  EXPECT_TRUE(match_single_rule("NN", ""));
  EXPECT_TRUE(match_single_rule("", ""));
}

TEST(MatchSingleRule, TakesTheMarkInTheRuleForAnyCharacter) {
  EXPECT_TRUE(match_single_rule("N-P", "NxP"));
  EXPECT_TRUE(match_single_rule("-", "anything"));
  EXPECT_FALSE(match_single_rule("N-P", "NxS"));
}

TEST(MatchSingleRule, TakesTheMarkInTheItemForAnOrdinaryCharacter) {
  EXPECT_FALSE(match_single_rule("NN", "N-"));
  EXPECT_TRUE(match_single_rule("N-", "N-"));
}

TEST(MatchSingleRule, TellsCasesAndHighBytesApart) {
  EXPECT_FALSE(match_single_rule("n", "N"));
  EXPECT_TRUE(match_single_rule("\xFF", "\xFF"));
  EXPECT_FALSE(match_single_rule("\xFF", "\x7F"));
}

TEST(MatchSingleRule, AgreesWithALoopOverThePositions) {
  test::Random random;
  for (int round = 0; round < 20000; ++round) {
    const std::string rule = random.text(5, "AB-");
    const std::string item = random.text(5, "AB-");
    bool expected = true;
    for (std::size_t p = 0; p != rule.size() && p != item.size(); ++p)
      expected = expected && (rule[p] == '-' || rule[p] == item[p]);
    ASSERT_EQ(match_single_rule(rule, item), expected) << "'" << rule << "' and '" << item << "'";
  }
}

TEST(UniRulesFilter, IsOnOnceThereIsARule) {
  UniRulesFilter filter;
  EXPECT_FALSE(filter.is_on());
  filter.add_rule("-");
  EXPECT_TRUE(filter.is_on());
}

TEST(UniRulesFilter, RefusesAndCountsEverythingWithoutRules) {
  UniRulesFilter filter;
  EXPECT_FALSE(filter.match("NN", true));
  EXPECT_FALSE(filter.match("", true));
  EXPECT_FALSE(filter.match("NN", false));
  EXPECT_EQ(filter.stats.unmatched, 2U);
  EXPECT_EQ(filter.file_stats.unmatched, 2U);
}

TEST(UniRulesFilter, CountsForTheFirstRuleThatAdmitsOnly) {
  UniRulesFilter filter;
  filter.add_rule("A-");
  filter.add_rule("-B");
  EXPECT_TRUE(filter.match("AB", true));
  EXPECT_TRUE(filter.match("CB", true));
  EXPECT_FALSE(filter.match("CC", true));
  EXPECT_EQ(filter.stats.matched, (Counts{1, 1}));
  EXPECT_EQ(filter.file_stats.matched, (Counts{1, 1}));
  EXPECT_EQ(filter.stats.unmatched, 1U);
  EXPECT_EQ(filter.file_stats.unmatched, 1U);
}

TEST(UniRulesFilter, LetsTheRuleOfTheMarkAloneAdmitEverything) {
  UniRulesFilter filter;
  filter.add_rule("-");
  for (const char* const tag : {"", "A", "-", "NNFS1"})
    EXPECT_TRUE(filter.match(tag, true)) << tag;
  EXPECT_EQ(filter.stats.matched, (Counts{4}));
}

TEST(UniRulesFilter, LetsTheFirstRuleAdmitAnEmptyTag) {
  UniRulesFilter filter;
  filter.add_rule("AB");
  filter.add_rule("-");
  EXPECT_TRUE(filter.match("", true));
  EXPECT_EQ(filter.stats.matched, (Counts{1, 0}));
}

TEST(UniRulesFilter, CountsNothingWhenNotAskedTo) {
  UniRulesFilter filter;
  filter.add_rule("A");
  EXPECT_TRUE(filter.match("A", false));
  EXPECT_FALSE(filter.match("B", false));
  EXPECT_EQ(filter.stats.matched, (Counts{0}));
  EXPECT_EQ(filter.file_stats.matched, (Counts{0}));
  EXPECT_EQ(filter.stats.unmatched, 0U);
  EXPECT_EQ(filter.file_stats.unmatched, 0U);
}

TEST(UniRulesFilter, ReadsEachLineThatIsNotEmptyWhole) {
  const test::TemporaryFolder folder;
  UniRulesFilter filter;
  ASSERT_TRUE(filter.read_rules(folder.write("rules", "A B\n\n\nC\r\n D").c_str()));
  EXPECT_EQ(filter.stats.matched.size(), 3U);
  EXPECT_TRUE(filter.match("A B", true));
  EXPECT_TRUE(filter.match("C\r", true));
  EXPECT_TRUE(filter.match(" D", true));
  EXPECT_FALSE(filter.match("CD", true));
  EXPECT_EQ(filter.stats.matched, (Counts{1, 1, 1}));
}

TEST(UniRulesFilter, StaysOffAfterAFileWithoutRules) {
  const test::TemporaryFolder folder;
  for (const char* const content : {"", "\n", "\n\n\n"}) {
    UniRulesFilter filter;
    EXPECT_TRUE(filter.read_rules(folder.write("rules", content).c_str()));
    EXPECT_FALSE(filter.is_on());
  }
}

TEST(UniRulesFilter, FailsForAFileThatCannotBeOpened) {
  const test::TemporaryFolder folder;
  UniRulesFilter filter;
  EXPECT_FALSE(filter.read_rules(folder.path("missing").c_str()));
  EXPECT_FALSE(filter.read_rules(folder.path().c_str()));
  EXPECT_FALSE(filter.is_on());
}

TEST(MultiRulesFilter, RefusesAndCountsEverythingWithoutRules) {
  MultiRulesFilter filter;
  EXPECT_FALSE(filter.is_on());
  EXPECT_FALSE(filter.match({"A", "B"}, true));
  EXPECT_FALSE(filter.match({"A", "B"}, false));
  EXPECT_EQ(filter.stats.unmatched, 1U);
  EXPECT_EQ(filter.file_stats.unmatched, 1U);
}

TEST(MultiRulesFilter, AdmitsWhenEveryPositionAgrees) {
  MultiRulesFilter filter;
  filter.add_rule({"AB", "XY"});
  EXPECT_TRUE(filter.match({"AB", "XY"}, true));
  EXPECT_FALSE(filter.match({"AB", "AB"}, true));
  EXPECT_FALSE(filter.match({"XY", "AB"}, true));
  EXPECT_EQ(filter.stats.matched, (Counts{1}));
  EXPECT_EQ(filter.stats.unmatched, 2U);
}

TEST(MultiRulesFilter, LeavesAPositionOfAnEmptyTagOrTagRuleFree) {
  MultiRulesFilter filter;
  filter.add_rule({"AB", "XY"});
  EXPECT_TRUE(filter.match({"AB", ""}, false));
  EXPECT_FALSE(filter.match({"B", ""}, false));
  filter.add_rule({"", "Q"});
  EXPECT_TRUE(filter.match({"whatever", "Q"}, false));
}

TEST(MultiRulesFilter, TriesOnlyRulesOfTheSameLength) {
  MultiRulesFilter filter;
  filter.add_rule({"-"});
  filter.add_rule({"-", "-", "-"});
  EXPECT_FALSE(filter.match({"A", "B"}, true));
  filter.add_rule({"-", "-"});
  EXPECT_TRUE(filter.match({"A", "B"}, true));
  EXPECT_EQ(filter.stats.matched, (Counts{0, 0, 1}));
}

TEST(MultiRulesFilter, CountsForTheFirstRuleThatAdmitsAndKeepsDuplicates) {
  MultiRulesFilter filter;
  filter.add_rule({"A", "B"});
  filter.add_rule({"A", "B"});
  EXPECT_TRUE(filter.match({"A", "B"}, true));
  EXPECT_TRUE(filter.match({"A", "B"}, false));
  EXPECT_EQ(filter.stats.matched, (Counts{1, 0}));
  EXPECT_EQ(filter.file_stats.matched, (Counts{1, 0}));
}

// The rules that a filter reads from a file of this content.
std::vector<MultiRulesFilter::Rule> _rules_of(const std::string& content, unsigned n) {
  const test::TemporaryFolder folder;
  MultiRulesFilter filter;
  EXPECT_TRUE(filter.read_rules(folder.write("rules", content).c_str(), n));
  EXPECT_EQ(filter.stats.matched, Counts(filter.rules().size()));
  EXPECT_EQ(filter.file_stats.matched, Counts(filter.rules().size()));
  EXPECT_EQ(filter.is_on(), !filter.rules().empty());
  return filter.rules();
}

TEST(MultiRulesFilter, ReadsLinesOfAsManyTagRulesAsAskedFor) {
  EXPECT_EQ(_rules_of("NN- -B-P NN\nNN- NN\n\nA B C D\nX Y Z", 3),
            (std::vector<Tags>{{"NN-", "-B-P", "NN"}, {"X", "Y", "Z"}}));
}

TEST(MultiRulesFilter, EndsAMemberAtEverySpace) {
  EXPECT_EQ(_rules_of("A B\nA B \nA  B\nA B C\n A B\n", 2), (std::vector<Tags>{{"A", "B"}, {"A", "B"}}));
  EXPECT_EQ(_rules_of("A  B\n A B\nA B  \n", 3), (std::vector<Tags>{{"A", "", "B"}, {"", "A", "B"}, {"A", "B", ""}}));
  EXPECT_EQ(_rules_of(" \n  \n", 2), (std::vector<Tags>{{"", ""}}));
}

TEST(MultiRulesFilter, SeparatesAtNothingButSpaces) {
  EXPECT_EQ(_rules_of("A\tB C\r\n", 2), (std::vector<Tags>{{"A\tB", "C\r"}}));
}

TEST(MultiRulesFilter, TakesLinesOfAnyLengthWhenNIsNothing) {
  EXPECT_EQ(_rules_of("A\nB C\n\nD E F \n", 0), (std::vector<Tags>{{"A"}, {"B", "C"}, {"D", "E", "F"}}));
}

TEST(MultiRulesFilter, StaysOffAfterAFileWithoutRules) {
  EXPECT_TRUE(_rules_of("", 2).empty());
  EXPECT_TRUE(_rules_of("\nA\nA B C\n", 2).empty());
}

TEST(MultiRulesFilter, FailsForAFileThatCannotBeOpened) {
  const test::TemporaryFolder folder;
  MultiRulesFilter filter;
  EXPECT_FALSE(filter.read_rules(folder.path("missing").c_str(), 2));
  EXPECT_FALSE(filter.read_rules(folder.path().c_str(), 2));
  EXPECT_FALSE(filter.is_on());
}

TEST(FilterStats, KeepOneZeroForEachRuleAfterAReset) {
  UniRulesFilter filter;
  filter.add_rule("A");
  filter.add_rule("B");
  filter.match("B", true);
  filter.match("C", true);
  filter.file_stats.reset();
  EXPECT_EQ(filter.file_stats.matched, (Counts{0, 0}));
  EXPECT_EQ(filter.file_stats.unmatched, 0U);
  EXPECT_EQ(filter.stats.matched, (Counts{0, 1}));
  EXPECT_EQ(filter.stats.unmatched, 1U);
}

}  // namespace
}  // namespace colx
