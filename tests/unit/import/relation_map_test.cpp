#include "import/relation_map.h"

#include <gtest/gtest.h>

#include <string>

#include "companion/errors.h"
#include "import/relation_tables.h"

namespace colx {
namespace {

using Source = RelationRule::Source;

std::string _text(const RelationRule* rule) {
  return rule == nullptr ? "nothing" : rule->text;
}

std::string _fault(const std::string& text) {
  try {
    const RelationMap map(text, "m");
  } catch (const input_error& error) {
    return error.what();
  }
  return "";
}

TEST(RelationMap, FindsARelationWithAsManyOfItsPartsAsItLists) {
  const RelationMap map("# comment\n\nobl\tAdv\nobl:arg\tObj\r\nsubj@expl\tAuxO\nsubj\tSb", "m");
  EXPECT_EQ(_text(map.find("obl", "")), "Adv");
  EXPECT_EQ(_text(map.find("obl:arg", "VERB")), "Obj");
  EXPECT_EQ(_text(map.find("obl:arg@agent", "")), "Obj");
  EXPECT_EQ(_text(map.find("obl:agent", "")), "Adv");
  EXPECT_EQ(_text(map.find("subj@expl", "")), "AuxO");
  EXPECT_EQ(_text(map.find("subj@pass", "")), "Sb");
  EXPECT_EQ(_text(map.find("ob", "")), "nothing");
  EXPECT_EQ(_text(map.find("", "")), "nothing");
  EXPECT_EQ(_text(map.find("# comment", "")), "nothing");
}

TEST(RelationMap, PrefersTheLineForTheClassOfTheParent) {
  const RelationMap map("mod\tAdv\nmod:x\tAuxZ\nNOUN>mod\tAtr", "m");
  EXPECT_EQ(_text(map.find("mod", "NOUN")), "Atr");
  EXPECT_EQ(_text(map.find("mod:x", "NOUN")), "Atr");
  EXPECT_EQ(_text(map.find("mod:x", "VERB")), "AuxZ");
  EXPECT_EQ(_text(map.find("mod", "")), "Adv");
}

TEST(RelationMap, KnowsWhatTakesTheFunctionOfItsParent) {
  const RelationMap map("a\tparent\nb\tparent_Co\nc\tparent=AuxP\nd\tpunctuation\ne\tUndef\n", "m");
  EXPECT_EQ(map.find("a", "")->source, Source::parent);
  EXPECT_EQ(_text(map.find("a", "")), "");
  EXPECT_EQ(map.find("b", "")->source, Source::parent);
  EXPECT_EQ(_text(map.find("b", "")), "_Co");
  EXPECT_EQ(map.find("c", "")->source, Source::phrase);
  EXPECT_EQ(_text(map.find("c", "")), "AuxP");
  EXPECT_EQ(map.find("d", "")->source, Source::punctuation);
  EXPECT_EQ(map.find("e", "")->source, Source::itself);
}

TEST(RelationMap, RefusesALineOfAnotherFormAndSaysWhereItIs) {
  EXPECT_EQ(_fault("a\tAtr\nb Atr\n"),
            "m:2: expected a relation and a function, separated by one TAB, found \"b Atr\"");
  EXPECT_NE(_fault("\tAtr\n"), "");
  EXPECT_NE(_fault("a\tAtr\t\n"), "");
  EXPECT_EQ(_fault("# c\n\na\tAttr\n"),
            "m:3: expected an analytical function, parent, parent_Ap, parent_Co, parent_Pa, parent=FUNCTION or "
            "punctuation, found \"Attr\"");
  for (const char* const unknown : {"", "Head", "parent_", "parent=", "parent=Head", "parent_Xx", "atr", " Atr"})
    EXPECT_NE(_fault("a\t" + std::string(unknown)), "") << unknown;
  EXPECT_EQ(_fault("a\tAtr\nb\tAtr\na\tSb\n"), "m:3: expected every relation once, found \"a\" again");
  EXPECT_EQ(_fault(""), "");
}

TEST(RelationTables, GiveANameThatBothListTheSameFunction) {
  int shared = 0;
  std::string_view text = universal_relations().text;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() + 1);
    if (line.starts_with('#') || surface_relations().text.find(
                                     "\n" + std::string(line.substr(0, line.find('\t') + 1))) == std::string_view::npos)
      continue;
    ++shared;
    EXPECT_NE(surface_relations().text.find("\n" + std::string(line) + "\n"), std::string_view::npos) << line;
  }
  EXPECT_GT(shared, 15);
}

TEST(RelationTables, AreChosenByTheRelationsThatOnlyOneOfThemKnows) {
  const auto chosen = [](const std::string& relations) {
    std::string text = "# comment\n";
    for (const char relation : relations)
      text += std::string("1\ta\ta\tX\tX\t_\t0\t") +
              (relation == 's'   ? "comp:obj@x"
               : relation == 'u' ? "nsubj:pass"
                                 : "det") +
              "\t_\t_\n";
    return recognise_relations(text).name;
  };
  EXPECT_EQ(chosen("ddsd"), "sud");
  EXPECT_EQ(chosen("dddu"), "ud");
  EXPECT_EQ(chosen("ssuus"), "sud");
  EXPECT_EQ(chosen("su"), "ud");
  EXPECT_EQ(chosen(""), "ud");
  EXPECT_EQ(relation_table("sud")->name, "sud");
  EXPECT_EQ(relation_table("x"), nullptr);
}

}  // namespace
}  // namespace colx
