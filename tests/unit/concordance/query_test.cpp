#include "concordance/query.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "companion/errors.h"
#include "corpus/dependencies.h"
#include "rows/block.h"
#include "rows/columns.h"
#include "tests/support/random.h"

namespace colx::concordance {
namespace {

QueryMember word(std::optional<std::string> lemma, std::optional<std::string> relation, std::uint32_t parent) {
  return {std::move(lemma), std::move(relation), parent};
}

const std::nullopt_t any = std::nullopt;

TEST(Query, ParentsOnTheRightFollowTheirDependents) {
  const Query query = parse_query("heavy <Atr rain");
  EXPECT_EQ(query.n(), 2U);
  EXPECT_EQ(query.text, "heavy <Atr rain");
  EXPECT_EQ(query.readings, (std::vector<QueryTree>{{word("heavy", "Atr", 2), word("rain", any, 0)}}));
}

TEST(Query, ParentsOnTheLeftComeBefore) {
  EXPECT_EQ(parse_query("take Obj> care AuxP> of").readings,
            (std::vector<QueryTree>{{word("take", any, 0), word("care", "Obj", 1), word("of", "AuxP", 2)}}));
}

TEST(Query, PositionsLeadToParentsThatAreNoNeighbours) {
  EXPECT_EQ(parse_query("big <Atr:3 black <Atr dog <Sb bark Adv> loudly").readings,
            (std::vector<QueryTree>{{word("big", "Atr", 3), word("black", "Atr", 3), word("dog", "Sb", 4),
                                     word("bark", any, 0), word("loudly", "Adv", 4)}}));
  EXPECT_EQ(parse_query("go Adv> home Adv:1> now").readings,
            (std::vector<QueryTree>{{word("go", any, 0), word("home", "Adv", 1), word("now", "Adv", 1)}}));
  EXPECT_EQ(parse_query("heavy <Atr:2 rain").readings, parse_query("heavy <Atr rain").readings);
}

TEST(Query, AStarIsAnyLemma) {
  EXPECT_EQ(parse_query("* <Atr *").readings, (std::vector<QueryTree>{{word(any, "Atr", 2), word(any, any, 0)}}));
}

TEST(Query, ARelationBehindASlashIsThatOfTheWordWhereverItsParentIs) {
  const std::vector<QueryTree> either = {{word(any, "Atr", 2), word("rain/Sb", any, 0)},
                                         {word(any, "Atr", 2), word("rain", "Sb", 0)}};
  EXPECT_EQ(parse_query("* <Atr rain/Sb").readings, either);
  // Of two relations of one word only one can be.
  EXPECT_EQ(parse_query("a/Sb <Atr rain").readings,
            (std::vector<QueryTree>{{word("a/Sb", "Atr", 2), word("rain", any, 0)}}));
  EXPECT_EQ(parse_query("1/2 <Atr km/h").readings,
            (std::vector<QueryTree>{{word("1/2", "Atr", 2), word("km/h", any, 0)}}));
  // A lemma never has the underscore.
  EXPECT_EQ(parse_query("* <Atr rain/Sb_Co").readings,
            (std::vector<QueryTree>{{word(any, "Atr", 2), word("rain", "Sb_Co", 0)}}));
}

TEST(Query, LemmasMayLookLikeArrows) {
  EXPECT_EQ(parse_query("<Atr <Atr Obj>").readings,
            (std::vector<QueryTree>{{word("<Atr", "Atr", 2), word("Obj>", any, 0)}}));
  EXPECT_EQ(parse_query("< <Atr >").readings, (std::vector<QueryTree>{{word("<", "Atr", 2), word(">", any, 0)}}));
}

TEST(Query, LemmasMayBeEmpty) {
  EXPECT_EQ(parse_query(" <Atr rain").readings, (std::vector<QueryTree>{{word("", "Atr", 2), word("rain", any, 0)}}));
  EXPECT_EQ(parse_query("heavy <Atr ").readings, (std::vector<QueryTree>{{word("heavy", "Atr", 2), word("", any, 0)}}));
}

TEST(Query, SuperfluousBlanksDoNotMatter) {
  EXPECT_EQ(parse_query("  heavy   <Atr rain ").readings, parse_query("heavy <Atr rain").readings);
}

TEST(Query, LemmasThatNgrexCutsAreTakenForTheirLookAlikes) {
  const Query query = parse_query("don't <Adv go");
  EXPECT_EQ(query.readings[0][0].lemma, "don\u2019t");
  ASSERT_EQ(query.notes.size(), 1U);
  EXPECT_NE(query.notes[0].find("don't"), std::string::npos);
  EXPECT_TRUE(parse_query("heavy <Atr rain").notes.empty());
}

TEST(Query, WhatIsNoTreeIsRefused) {
  for (const std::string_view text :
       {"", "rain", "heavy rain", "heavy <Atr", "<Atr rain", "heavy <Atr rain Sb", "heavy <Atr:1 rain",
        "heavy <Atr:3 rain", "a <Atr:3 b <Atr:9 c", "a <Atr b Obj> c <Atr d", "a <Atr:x b", "a Atr:2> b",
        "a <Sb b <Sb c <Sb d <Sb e <Sb f <Sb g <Sb h", "a <Atr b Atr> c Atr>"})
    EXPECT_THROW(parse_query(text), usage_error) << text;
}

TEST(Query, AnUnknownRelationIsNamed) {
  try {
    parse_query("heavy <amod rain");
    FAIL();
  } catch (const usage_error& error) {
    EXPECT_NE(std::string(error.what()).find("there is no relation \"amod\""), std::string::npos) << error.what();
  }
}

// A random tree: every word after the first hangs on one that is there, in a random order of words.
table::Block random_block(test::Random& random, std::vector<std::string>& lemmas) {
  table::Block block;
  block.n = 2 + random.below(6);
  std::vector<std::uint32_t> order;
  for (std::uint32_t i = 1; i <= block.n; ++i)
    order.insert(order.begin() + random.below(static_cast<std::uint32_t>(order.size() + 1)), i);
  lemmas.clear();
  for (std::size_t i = 0; i < block.n; ++i) {
    const std::vector<std::string> special = {"<Atr", "Obj>", "<Sb", "Atr>", "a/Sb", "<", ">", "", "/", "a", "b/Obj>"};
    lemmas.push_back(random.once_in(2) ? special[random.below(static_cast<std::uint32_t>(special.size()))]
                                       : "x" + random.text(3, "abc<>/*"));
  }
  for (std::size_t i = 0; i < block.n; ++i) {
    table::Member& member = block.members[order[i] - 1];
    member.lemma = lemmas[order[i] - 1];
    member.parent = i == 0 ? 0 : order[random.below(static_cast<std::uint32_t>(i))];
    member.relation = i == 0 ? "Head" : dependency2cstring(static_cast<std::uint8_t>(random.below(dependencies_count)));
  }
  return block;
}

TEST(Query, WhatIsPrintedAsPatternIsReadAsThatTree) {
  auto random = test::Random();
  std::vector<std::string> lemmas;
  std::string text;
  for (int i = 0; i < 4000; ++i) {
    const table::Block block = random_block(random, lemmas);
    table::write_tree_text(block, text);
    QueryTree expected;
    for (std::size_t k = 0; k < block.n; ++k) {
      QueryMember member = word(lemmas[k], any, block.members[k].parent);
      if (member.parent != 0) member.relation = block.members[k].relation;
      expected.push_back(member);
    }
    const Query query = parse_query(text);
    EXPECT_NE(std::find(query.readings.begin(), query.readings.end(), expected), query.readings.end()) << text;
  }
}

}  // namespace
}  // namespace colx::concordance
