#include "table/profile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "companion/errors.h"
#include "table/table.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

using Words = std::vector<std::string>;

// Cells 9 1 1 f, so that logDice is 14 + log2(2 f / (2 f + 2)): 13 for 1, 13.415 for 2, 13.585 for 3.
std::string _pair(const std::string& a, const std::string& b, const std::string& relation, unsigned f,
                  bool head_is_first = false) {
  const std::string first = head_is_first ? "0\tHead" : "2\t" + relation;
  const std::string second = head_is_first ? "1\t" + relation : "0\tHead";
  return "1\t" + a + "\tA\t" + first + "\n2\t" + b + "\tN\t" + second + "\n9\t1\t1\t" + std::to_string(f) +
         "\n1\tinf\t-inf\t0.5\t1\t2\n\n";
}

std::string _profile(const std::string& content, Words arguments, bool bold = false) {
  const test::TemporaryFolder folder;
  arguments.push_back(folder.write("out", content));
  TextOutput output;
  write_table(parse_options(arguments), output, false, bold);
  return output.text();
}

const std::string pairs = _pair("heavy", "rain", "Atr", 3) + _pair("rain", "of", "Atr", 1, true) +
                          _pair("rain", "fall", "Sb", 2) + _pair("see", "rain", "Obj", 3, true) +
                          _pair("light", "rain", "Atr", 2) + _pair("snow", "fall", "Sb", 7) + "\n";

TEST(Profile, HasABlockForEachRelationAndDirection) {
  EXPECT_EQ(_profile(pairs, {"--profile=rain"}),
            "  collocate  tag  frequency  logDice  pattern\n"
            "\n"
            "rain as head: what is Atr of it (3 rows, 6 occurrences)\n"
            "  heavy      A            3    13.58  heavy <Atr rain\n"
            "  light      A            2    13.42  light <Atr rain\n"
            "  of         N            1       13  rain Atr> of\n"
            "\n"
            "rain as dependent: of what it is Obj (1 row, 3 occurrences)\n"
            "  see        A            3    13.58  see Obj> rain\n"
            "\n"
            "rain as dependent: of what it is Sb (1 row, 2 occurrences)\n"
            "  fall       N            2    13.42  rain <Sb fall\n");
}

TEST(Profile, GoesByTheOptionsThatChooseAndSort) {
  EXPECT_EQ(_profile(pairs, {"--profile=RAIN", "--ignore-case", "--sort=+t", "--top=1", "--where=relation1=Atr"}, true),
            "  collocate  tag  frequency       t  pattern\n"
            "\n"
            "\x1b[1mrain as head: what is Atr of it (2 rows, 5 occurrences)\x1b[0m\n"
            "  light      A            2  0.9247  light <Atr rain\n");
  EXPECT_EQ(_profile(pairs, {"--profile=rain", "--sort=lemma1", "--top=2", "--min-frequency=3"}),
            "  collocate  tag  frequency  logDice  pattern\n"
            "\n"
            "rain as dependent: of what it is Obj (1 row, 3 occurrences)\n"
            "  see        A            3    13.58  see Obj> rain\n"
            "\n"
            "rain as head: what is Atr of it (1 row, 3 occurrences)\n"
            "  heavy      A            3    13.58  heavy <Atr rain\n");
}

TEST(Profile, GroupsLongerNGramsByTheShapeOfTheirTree) {
  const std::string triple =
      "1\tpay\tV\t0\tHead\n2\tattention\tN\t1\tObj\n3\tto\tP\t1\tAuxP\n1\t0\t0\t0\t0\t0\t0\t1\n1\t1\n\n";
  EXPECT_EQ(_profile(triple + "\n", {"--profile=attention"}),
            "  collocate  tag  frequency  logDice  pattern\n"
            "\n"
            "* Obj> attention AuxP:1> * (1 row, 1 occurrence)\n"
            "  pay to     V P          1       14  pay Obj> attention AuxP:1> to\n");
}

TEST(Profile, FindsAWordInBothPlacesOfOnePair) {
  const std::string profile = _profile(_pair("rain", "rain", "Atr", 1) + "\n", {"--profile=rain"});
  EXPECT_NE(profile.find("rain as head: what is Atr of it (1 row, 1 occurrence)"), std::string::npos);
  EXPECT_NE(profile.find("rain as dependent: of what it is Atr (1 row, 1 occurrence)"), std::string::npos);
}

TEST(Profile, FindsAProtectedLemmaAsItIsTyped) {
  const std::string profile = _profile(_pair("in", "New\xCB\x8DYork", "Adv", 1, true) + "\n", {"--profile=New_York"});
  EXPECT_NE(profile.find("in Adv> New\xCB\x8DYork\n"), std::string::npos);
}

TEST(Profile, SaysWhenTheWordIsNotThere) {
  EXPECT_THROW(_profile(pairs, {"--profile=Sonne"}), input_error);
  EXPECT_THROW(_profile(pairs, {"--profile=rain", "--where=frequency>3"}), input_error);
  EXPECT_THROW(_profile("\n", {"--profile=rain"}), input_error);
}

TEST(Profile, RefusesOptionsThatWouldHaveNoEffect) {
  for (const std::string other : {"--format=tsv", "--columns=lemma1", "--per=lemma1", "--cells", "--precision=3"})
    EXPECT_THROW(_profile(pairs, {"--profile=rain", other}), usage_error) << other;
  EXPECT_THROW(_profile(pairs, {"--profile="}), usage_error);
}

}  // namespace
}  // namespace colx::table
