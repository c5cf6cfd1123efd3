#include "import/datafile_words.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace colx {
namespace {

TreebankSentence _word(const std::string& form, const std::string& lemma) {
  TreebankSentence sentence;
  TreebankWord& word = sentence.words.emplace_back();
  word.form = form;
  word.lemma = lemma;
  word.upos = "NOUN";
  word.xpos = "NN S";
  word.feats = "Case=Zzz";
  word.relation = "nsubj";
  word.line = 7;
  return sentence;
}

DatafileWord _converted(const std::string& lemma, const Conversion& conversion) {
  std::vector<TreebankProblem> problems;
  return datafile_words(_word("don't", lemma), conversion, problems).at(0);
}

TEST(DatafileWords, TakesTheFormForAnUnspecifiedLemma) {
  const Conversion conversion{.format = TreebankFormat::conllu};
  EXPECT_EQ(_converted("do", conversion).lemma, "do");
  EXPECT_EQ(_converted("_", conversion).lemma, "don\xE2\x80\x99t");
  EXPECT_TRUE(_converted("", conversion).lemma_is_form);
  EXPECT_TRUE(_converted("", conversion).is_protected);
  EXPECT_EQ(_converted("_", {.format = TreebankFormat::datafile, .protect_lemmas = false}).lemma, "_");
}

TEST(DatafileWords, ProtectsFormsAndLemmasEachAsAsked) {
  const Conversion forms_only{.format = TreebankFormat::conllx, .protect_lemmas = false};
  EXPECT_EQ(_converted("_", forms_only).lemma, "don\xE2\x80\x99t");
  EXPECT_EQ(_converted("b'c", forms_only).lemma, "b'c");
  EXPECT_FALSE(_converted("b'c", forms_only).is_protected);
}

TEST(DatafileWords, TakesTagAndRelationFromWhereItIsTold) {
  EXPECT_EQ(_converted("a", {.tag = TagSource::xpos}).tag, "NN\xC2\xA0S");
  EXPECT_EQ(_converted("a", {.tag = TagSource::upos}).tag, "NOUN");
  const DatafileWord made = _converted("a", {.tag = TagSource::feats, .functions = false});
  EXPECT_EQ(made.tag, "N?----------");
  EXPECT_TRUE(made.has_unknown_values);
  EXPECT_EQ(made.relation, "nsubj");
  EXPECT_TRUE(made.relation_is_undefined);
  EXPECT_EQ(_converted("a", {.tag = TagSource::xpos}).relation, "Sb");
}

TEST(DatafileWords, NamesTheColumnOfATextThatIsTooLong) {
  const auto problem = [](const std::string& form, const std::string& lemma) {
    std::vector<TreebankProblem> problems;
    datafile_words(_word(form, lemma), {.protect_lemmas = false, .protect_forms = false}, problems);
    return problems.empty() ? "" : std::to_string(problems[0].line) + ":" + problems[0].column_name;
  };
  EXPECT_EQ(problem("a", std::string(65535, 'x')), "");
  EXPECT_EQ(problem("a", std::string(65536, 'x')), "7:LEMMA");
  EXPECT_EQ(problem(std::string(65536, 'x'), "_"), "7:FORM");
  EXPECT_EQ(problem("a", std::string(65535, 'x') + "_tail"), "");  // ngrex cuts the tail
}

}  // namespace
}  // namespace colx
