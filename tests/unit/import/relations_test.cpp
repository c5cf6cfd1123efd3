#include "import/relations.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corpus/dependencies.h"
#include "import/relation_tables.h"

namespace colx {
namespace {

using Functions = std::vector<std::string>;

// Words given by parent and relation; the form of every word is its relation.
TreebankSentence _sentence(const std::vector<std::pair<std::uint32_t, std::string>>& words) {
  TreebankSentence sentence;
  for (const auto& [parent, relation] : words) {
    TreebankWord& word = sentence.words.emplace_back();
    word.form = sentence.texts.keep(relation);
    word.parent = parent;
    word.relation = word.form;
  }
  return sentence;
}

Functions _functions_by(const RelationTable& table, const TreebankSentence& sentence) {
  AnalyticalFunctions functions(map_of(table));
  const std::vector<std::string_view> found = functions.of(sentence);
  return {found.begin(), found.end()};
}

Functions _functions(const TreebankSentence& sentence) {
  return _functions_by(universal_relations(), sentence);
}

TEST(Relations, MapsUniversalRelationsWithTheirSubtypes) {
  EXPECT_EQ(_functions(_sentence({{2, "nsubj:pass"}, {0, "root"}, {2, "obl"}, {2, "obl:arg"}, {2, "expl:pv"}})),
            (Functions{"Sb", "Pred", "Adv", "Obj", "AuxT"}));
}

TEST(Relations, GivesConjunctsTheFunctionOfTheFirstWithinTheirChain) {
  EXPECT_EQ(_functions(_sentence({{0, "root"}, {1, "obj"}, {2, "conj"}, {3, "conj"}, {4, "conj:expl"}})),
            (Functions{"Pred", "Obj", "Obj_Co", "Obj_Co", "Obj_Co"}));
}

TEST(Relations, FollowsChainsThatRunFromRightToLeft) {
  EXPECT_EQ(_functions(_sentence({{2, "conj"}, {3, "conj"}, {0, "root"}})), (Functions{"Pred_Co", "Pred_Co", "Pred"}));
}

TEST(Relations, GivesAnAppositionTheFunctionOfItsParentAndOneSuffixOnly) {
  EXPECT_EQ(_functions(_sentence({{0, "root"}, {1, "nsubj"}, {2, "appos"}, {3, "conj"}, {2, "fixed"}})),
            (Functions{"Pred", "Sb", "Sb_Ap", "Sb_Co", "Sb"}));
}

TEST(Relations, KeepsAnUndefinedFunctionBareInCoordinations) {
  EXPECT_EQ(_functions(_sentence({{0, "dep"}, {1, "conj"}})), (Functions{"Undef", "Undef"}));
}

TEST(Relations, TellsCommasFromFinalAndOtherPunctuation) {
  TreebankSentence sentence = _sentence({{0, "root"}, {1, "punct"}, {1, "punct"}, {1, "punct"}});
  sentence.words[1].form = ",";
  EXPECT_EQ(_functions(sentence), (Functions{"Pred", "AuxX", "AuxG", "AuxK"}));
}

TEST(Relations, GivesTheFinalFunctionToTheMarkThatEndsTheSentence) {
  const auto last = [](const std::vector<std::string>& marks) {
    std::vector<std::pair<std::uint32_t, std::string>> words = {{0, "root"}};
    for (const std::string& mark : marks)
      words.emplace_back(1, mark == "a" ? "obj" : "punct:x");
    TreebankSentence sentence = _sentence(words);
    for (std::size_t i = 0; i < marks.size(); ++i)
      sentence.words[i + 1].form = marks[i];
    const Functions functions = _functions(sentence);
    return Functions(functions.begin() + 1, functions.end());
  };
  EXPECT_EQ(last({".", "\""}), (Functions{"AuxK", "AuxG"}));
  EXPECT_EQ(last({"?!", "...", ")"}), (Functions{"AuxG", "AuxK", "AuxG"}));
  EXPECT_EQ(last({".", "a", ":"}), (Functions{"AuxG", "Obj", "AuxK"}));
  EXPECT_EQ(last({"\xE1\x8D\xA7", "\xC2\xBB"}), (Functions{"AuxK", "AuxG"}));
  EXPECT_EQ(last({"\xE3\x80\x81", "\xE3\x80\x82"}), (Functions{"AuxX", "AuxK"}));
}

TEST(Relations, LeavesEveryAnalyticalFunctionAsItIs) {
  for (unsigned code = 0; code < dependencies_count; ++code) {
    const std::string name(dependency2cstring(static_cast<std::uint8_t>(code)));
    EXPECT_EQ(_functions(_sentence({{0, name}})), Functions{name});
  }
}

TEST(Relations, RecognisesOtherSpellings) {
  EXPECT_EQ(_functions(_sentence(
                {{0, "SBJ"}, {1, "ATR_CO"}, {1, "AUXP"}, {1, "OBJ_AP"}, {1, "SBJ_PA"}, {1, "OComp_Co"}, {1, "ATVV"}})),
            (Functions{"Sb", "Atr_Co", "AuxP", "Obj_Ap", "Sb_Pa", "Atv_Co", "AtvV"}));
}

TEST(Relations, TakesTheLastSuffixThatTheFunctionCanHave) {
  EXPECT_EQ(_functions(_sentence({{0, "ATR_AP_CO"}, {1, "Sb_M"}, {1, "SBJ_XX"}, {1, "ATR_CO_M"}})),
            (Functions{"Atr_Co", "Sb", "Sb", "Atr_Co"}));
}

TEST(Relations, RecognisesUniversalRelationsOfTheFirstVersionAndInCapitals) {
  EXPECT_EQ(
      _functions(_sentence({{0, "ROOT"}, {1, "dobj"}, {1, "nsubjpass"}, {2, "CONJ"}, {1, "auxpass"}, {5, "mwe"}})),
      (Functions{"Pred", "Obj", "Sb", "Obj_Co", "AuxV", "AuxV"}));
}

TEST(Relations, MakesEverythingElseUndefined) {
  EXPECT_EQ(_functions(_sentence({{0, "_"}, {1, ""}, {1, "HEAD"}, {1, "nonsense:conj"}})),
            (Functions{"Undef", "Undef", "Undef", "Undef"}));
}

// Words given by word class, parent and relation, by the table for surface-syntactic relations.
struct Surface {
  std::string upos;
  std::uint32_t parent;
  std::string relation;
};
Functions _surface(const std::vector<Surface>& words) {
  std::vector<std::pair<std::uint32_t, std::string>> relations;
  for (const Surface& word : words)
    relations.emplace_back(word.parent, word.relation);
  TreebankSentence sentence = _sentence(relations);
  for (std::size_t i = 0; i < words.size(); ++i)
    sentence.words[i].upos = words[i].upos;
  return _functions_by(surface_relations(), sentence);
}

TEST(SurfaceRelations, GiveANounTheFunctionOfItsPrepositionWhichIsAuxP) {
  // "The end of the story depends on readers": "of" modifies a noun, "on" completes the verb.
  EXPECT_EQ(_surface({{"DET", 2, "det"},
                      {"NOUN", 6, "subj"},
                      {"ADP", 2, "udep"},
                      {"DET", 5, "det"},
                      {"NOUN", 3, "comp:obj"},
                      {"VERB", 0, "root"},
                      {"ADP", 6, "comp:obl@agent"},
                      {"NOUN", 7, "comp:obj"}}),
            (Functions{"Atr", "Sb", "AuxP", "Atr", "Atr", "Pred", "AuxP", "Obj"}));
}

TEST(SurfaceRelations, GiveAVerbTheFunctionOfItsAuxiliariesAndConjunction) {
  // "She said that it has been sold"
  EXPECT_EQ(_surface({{"PRON", 2, "subj"},
                      {"VERB", 0, "root"},
                      {"SCONJ", 2, "comp:obj"},
                      {"PRON", 5, "subj@pass"},
                      {"AUX", 3, "comp:obj"},
                      {"AUX", 5, "comp:aux@tense"},
                      {"VERB", 6, "comp:aux@pass"}}),
            (Functions{"Sb", "Pred", "AuxC", "Sb", "AuxV", "AuxV", "Obj"}));
}

TEST(SurfaceRelations, TellModifiersOfNounsFromOthers) {
  // "Very small children run fast", "who" clauses are attributes wherever they hang
  EXPECT_EQ(
      _surface({{"ADV", 2, "mod"}, {"ADJ", 3, "mod"}, {"NOUN", 4, "subj"}, {"VERB", 0, "root"}, {"ADV", 4, "mod"}}),
      (Functions{"Adv", "Atr", "Sb", "Pred", "Adv"}));
  EXPECT_EQ(_surface({{"VERB", 0, "root"}, {"VERB", 1, "mod@relcl"}}), (Functions{"Pred", "Atr"}));
}

TEST(SurfaceRelations, MakeThePredicateOfACopulaPnomAndCarrySuffixesBelowFunctionWords) {
  // "is red and has faded": the second auxiliary is a conjunct of the copula
  EXPECT_EQ(_surface({{"AUX", 0, "root"},
                      {"ADJ", 1, "comp:pred"},
                      {"CCONJ", 4, "cc"},
                      {"AUX", 1, "conj:coord"},
                      {"VERB", 4, "comp:aux"},
                      {"NOUN", 2, "conj:appos"}}),
            (Functions{"Pred", "Pnom", "Coord", "AuxV", "Pred_Co", "Pnom_Ap"}));
}

TEST(Relations, ResolvesAChainAsLongAsASentenceCanBe) {
  std::vector<std::pair<std::uint32_t, std::string>> words{{0, "root"}};
  for (std::uint32_t i = 1; i < 65535; ++i)
    words.emplace_back(i, "conj");
  EXPECT_EQ(_functions(_sentence(words)).back(), "Pred_Co");
}

}  // namespace
}  // namespace colx
