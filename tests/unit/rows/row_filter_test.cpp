#include "rows/row_filter.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "rows/block_reader.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

// Whether the pair of these two words, with tags A and N, the relation Atr and the frequency 3, is admitted.
bool _admits(const std::string& first, const std::string& second, const std::string& condition,
             CaseOf letters = CaseOf::matters) {
  const std::string text =
      "1\t" + first + "\tA\t2\tAtr\n2\t" + second + "\tN\t0\tHead\n9\t1\t1\t3\n1\tinf\t-inf\t0.5\t1\t2\n\n";
  Block block;
  Fault fault;
  if (parse_block(text, block, fault) != ParseStatus::complete) throw input_error(fault.message);
  return RowFilter(condition, letters).admits(Row(block, 1, {}));
}

TEST(RowFilter, JoinsConditionsByAndCloserThanByOr) {
  // For each of the eight cases of three conditions being met.
  for (int met = 0; met < 8; ++met) {
    const bool a = (met & 1) != 0;
    const bool b = (met & 2) != 0;
    const bool c = (met & 4) != 0;
    const auto one = [](bool is_met) { return is_met ? std::string("lemma1=heavy") : std::string("lemma1=light"); };
    const auto admitted = [&](const std::string& first, const std::string& second) {
      return _admits("heavy", "rain", one(a) + first + one(b) + second + one(c));
    };
    EXPECT_EQ(admitted(" or ", " and "), a || (b && c)) << met;
    EXPECT_EQ(admitted(" and ", " or "), (a && b) || c) << met;
    EXPECT_EQ(admitted(" or ", " or "), a || b || c) << met;
    EXPECT_EQ(admitted(" and ", " and "), a && b && c) << met;
  }
}

TEST(RowFilter, TakesOrAndAndForWordsWhereNoConditionFollows) {
  EXPECT_TRUE(_admits("or", "and", "lemma1=or"));
  EXPECT_TRUE(_admits("or", "and", "lemma1=or and lemma2=and"));
  EXPECT_TRUE(_admits("or", "and", "lemma1=or or lemma2=or"));
  EXPECT_TRUE(_admits("or", "and", "pattern~^or <Atr and$"));
  EXPECT_FALSE(_admits("a", "b", "lemma1=a or b"));
  EXPECT_TRUE(_admits("a or b", "c", "lemma1=a or b"));
  EXPECT_TRUE(_admits("a and", "c", "lemma1=a and"));
  EXPECT_TRUE(_admits("a or b in c", "d", "lemma1=a or b in c"));
  // A name and a sign must be a condition, and this one has no column.
  EXPECT_THROW(_admits("a", "b", "lemma1=a or lema2=b"), usage_error);
}

TEST(RowFilter, TakesWhatIsInQuotesAsItStands) {
  EXPECT_TRUE(_admits("a or lemma1=b", "c", "lemma1='a or lemma1=b'"));
  EXPECT_TRUE(_admits("a b", "c", "lemma1='a b' and lemma2='c'"));
  EXPECT_TRUE(_admits("a", "c", "frequency>='3' and lemma2~'^c$'"));
  EXPECT_TRUE(_admits("", "c", "lemma1=''"));
  const auto relation = [](const std::string& value) {
    const std::string text = "1\ta\tA\t2\t" + value + "\n2\tb\tN\t0\tHead\n9\t1\t1\t3\n1\t1\t1\t1\t1\t2\n\n";
    return text;
  };
  Block block;
  Fault fault;
  const std::string text = relation("it's");
  ASSERT_EQ(parse_block(text, block, fault), ParseStatus::complete);
  EXPECT_TRUE(RowFilter("relation1='it''s'").admits(Row(block, 1, {})));
  EXPECT_TRUE(RowFilter("relation1=it's").admits(Row(block, 1, {})));
  EXPECT_TRUE(RowFilter("relation1~'s").admits(Row(block, 1, {})));
  EXPECT_FALSE(RowFilter("relation1='it's'").admits(Row(block, 1, {})));
}

TEST(RowFilter, LooksIntoAFile) {
  const test::TemporaryFolder folder;
  const std::string set = folder.write("words", "\xEF\xBB\xBFrain\r\n\r\n\nsnow\nNew_York");
  EXPECT_TRUE(_admits("heavy", "rain", "lemma2 in " + set));
  EXPECT_TRUE(_admits("heavy", "snow", "lemma2 in '" + set + "' and frequency=3"));
  EXPECT_FALSE(_admits("heavy", "fog", "lemma2 in " + set));
  EXPECT_TRUE(_admits("heavy", "fog", "lemma2 not in " + set + " or lemma1=light"));
  EXPECT_FALSE(_admits("heavy", "", "lemma2 in " + set));
  EXPECT_TRUE(_admits("heavy", "New\xCB\x8DYork", "lemma2 in " + set));
  EXPECT_EQ(RowFilter("lemma2 in " + set).notes().size(), 1U);
  EXPECT_EQ(RowFilter("tag2 in " + set).notes().size(), 0U);
  EXPECT_THROW(_admits("heavy", "rain", "lemma2 in " + folder.path("none")), input_error);
  EXPECT_THROW(_admits("heavy", "rain", "lemma2 in " + folder.path()), input_error);
  EXPECT_THROW(_admits("heavy", "rain", "frequency in " + set), usage_error);
}

TEST(RowFilter, IgnoresTheCaseOfLettersWhenAsked) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  const test::TemporaryFolder folder;
  const std::string set = folder.write("words", "\u010cern\u00fd\n");
  for (const std::string condition :
       {"lemma1=\u010dERN\u00dd", "lemma1~^\u010c.RN", "lemma1!=x", "relation1=ATR", "lemma1 in ", "tag1~[a]"}) {
    const std::string whole = condition.ends_with("in ") ? condition + set : condition;
    EXPECT_TRUE(_admits("\u010dern\u00fd", "x", whole, CaseOf::is_ignored)) << condition;
  }
  EXPECT_FALSE(_admits("Rain", "x", "lemma1!=rain", CaseOf::is_ignored));
  EXPECT_FALSE(_admits("Rain", "x", "lemma1=rain"));
  std::setlocale(LC_CTYPE, before.c_str());
}

TEST(RowFilter, FindsAProtectedLemmaAsItIsTypedAndSaysSo) {
  EXPECT_TRUE(_admits("New\xCB\x8DYork", "x", "lemma1=New_York"));
  EXPECT_FALSE(_admits("New\xCB\x8DYork", "x", "lemma1!=New_York"));
  EXPECT_TRUE(_admits("don\xE2\x80\x99t", "x", "lemma1=don't"));
  const auto notes = RowFilter("lemma1=New_York or lemma2=York or relation1=AuxP_Co").notes();
  ASSERT_EQ(notes.size(), 1U);
  EXPECT_EQ(
      notes[0],
      "\"New_York\" is taken for \"New\xCB\x8DYork\", the lemma that ngrex-import makes of it, as no lemma has one of "
      "' : ; ^ _");
}

TEST(RowFilter, RefusesWhatIsNoCondition) {
  for (const std::string wrong : {"", "lemma1", "lemma1 = a", "=a", "lemma1=a and frequency>x", "lemma1 in", "rank=1",
                                  "lemma1=a or tag1>b", "frequency<NA", "lemma8=a", "lemma1~("})
    EXPECT_THROW(RowFilter{wrong}, usage_error) << wrong;
}

}  // namespace
}  // namespace colx::table
