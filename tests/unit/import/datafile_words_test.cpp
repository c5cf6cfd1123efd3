#include "import/datafile_words.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "import/relation_tables.h"
#include "tests/support/random.h"

namespace colx {
namespace {

TreebankSentence _word(const std::string& form, const std::string& lemma) {
  TreebankSentence sentence;
  TreebankWord& word = sentence.words.emplace_back();
  word.form = sentence.texts.keep(form);
  word.lemma = sentence.texts.keep(lemma);
  word.upos = "NOUN";
  word.xpos = "NN S";
  word.feats = "Case=Zzz";
  word.relation = "nsubj";
  word.line = 7;
  return sentence;
}

// A converted word with texts of its own.
struct Converted {
  explicit Converted(const DatafileWord& word)
      : lemma(word.lemma),
        tag(word.tag),
        relation(word.relation),
        lemma_is_form(word.lemma_is_form),
        is_protected(word.is_protected),
        has_unknown_values(word.has_unknown_values),
        relation_is_undefined(word.relation_is_undefined) {}

  std::string lemma;
  std::string tag;
  std::string relation;
  bool lemma_is_form;
  bool is_protected;
  bool has_unknown_values;
  bool relation_is_undefined;
};

Converted _converted(const std::string& lemma, const Conversion& conversion) {
  std::vector<TreebankProblem> problems;
  const TreebankSentence sentence = _word("don't", lemma);
  return Converted(SentenceConverter(conversion).convert(sentence, problems).at(0));
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
  const Converted made = _converted("a", {.tag = TagSource::feats});
  EXPECT_EQ(made.tag, "N?----------");
  EXPECT_TRUE(made.has_unknown_values);
  EXPECT_EQ(made.relation, "nsubj");
  EXPECT_TRUE(made.relation_is_undefined);
  EXPECT_EQ(_converted("a", {.tag = TagSource::xpos, .relations = &map_of(universal_relations())}).relation, "Sb");
}

TEST(DatafileWords, NamesTheColumnOfATextThatIsTooLong) {
  const auto problem = [](const std::string& form, const std::string& lemma) {
    std::vector<TreebankProblem> problems;
    SentenceConverter({.protect_lemmas = false, .protect_forms = false}).convert(_word(form, lemma), problems);
    return problems.empty() ? "" : std::to_string(problems[0].line) + ":" + problems[0].column_name;
  };
  EXPECT_EQ(problem("a", std::string(65535, 'x')), "");
  EXPECT_EQ(problem("a", std::string(65536, 'x')), "7:LEMMA");
  EXPECT_EQ(problem(std::string(65536, 'x'), "_"), "7:FORM");
  EXPECT_EQ(problem("a", std::string(65535, 'x') + "_tail"), "");  // ngrex cuts the tail
}

TEST(DatafileWords, RemembersNothingWrongFromOneSentenceToTheNext) {
  test::Random random;
  const Conversion conversion{.tag = TagSource::feats, .relations = &map_of(universal_relations())};
  SentenceConverter used(conversion);
  std::vector<TreebankProblem> problems;
  for (int round = 0; round < 3000; ++round) {
    TreebankSentence sentence;
    std::vector<std::string> texts;
    for (std::uint32_t i = random.below(4); i < 4; ++i) {
      std::string feats;
      for (std::uint32_t f = random.below(9); f > 0; --f)
        feats += random.once_in(2) ? "Case=Nom|" : random.once_in(2) ? "Number=Plur|" : "Number=Strange|";
      texts.insert(texts.end(), {random.text(3, "a' \xC2\xA0"), random.text(2, "_:b"), feats});
    }
    for (std::size_t i = 0; i < texts.size(); i += 3) {
      TreebankWord& word = sentence.words.emplace_back();
      word.form = texts[i];
      word.lemma = texts[i + 1];
      word.upos = random.once_in(2) ? "NOUN" : "VERB";
      word.feats = texts[i + 2];
      word.relation = random.once_in(2) ? "nsubj" : "dep";
    }
    std::string rows, expected;
    append_rows(rows, sentence, used.convert(sentence, problems));
    append_rows(expected, sentence, SentenceConverter(conversion).convert(sentence, problems));
    ASSERT_EQ(rows, expected);
  }
}

TEST(DatafileWords, WritesRowsAsTheyStandInADatafile) {
  TreebankSentence sentence = _word("Dogs", "dog");
  sentence.words.push_back(sentence.words[0]);
  sentence.words[1].parent = 4294967295U;
  sentence.words[1].relation = "obj";
  std::vector<TreebankProblem> problems;
  std::string text = "before\n";
  append_rows(text, sentence, SentenceConverter({}).convert(sentence, problems));
  EXPECT_EQ(text,
            "before\n"
            "1\tDogs\tdog\tNN\xC2\xA0S\t0\tnsubj\n"
            "2\tDogs\tdog\tNN\xC2\xA0S\t4294967295\tobj\n");
}

}  // namespace
}  // namespace colx
