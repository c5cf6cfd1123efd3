#include "examples/marked_sentence.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "companion/utf8.h"
#include "sentences.h"

namespace colx::examples {
namespace {

using test::heavy_rain;
using test::hit_at;
using test::sentence_of;
using test::written_as;

using Pieces = std::vector<Piece>;

TEST(MarkedSentence, IsTheFormsJoinedByBlanks) {
  EXPECT_EQ(marked_sentence(heavy_rain(), hit_at({1, 2}), 2),
            (Pieces{{"Heavy", true, false}, {" "}, {"rain", true, true}, {" fell ."}}));
}

TEST(MarkedSentence, IsWhatWasWrittenWhereThatIsKnown) {
  EXPECT_EQ(marked_sentence(written_as(heavy_rain(), "Heavy  rain fell."), hit_at({2, 3}), 2),
            (Pieces{{"Heavy  "}, {"rain", true, false}, {" "}, {"fell", true, true}, {"."}}));
  EXPECT_EQ(plain_sentence(written_as(heavy_rain(), "Heavy  rain fell.")), "Heavy  rain fell.");
  EXPECT_EQ(plain_sentence(written_as(heavy_rain(), "")), "Heavy rain fell .");
}

TEST(MarkedSentence, MarksMembersThatAreWrittenAsOneWordTogether) {
  use_utf8_characters();
  const auto sentence = sentence_of({{"va", 0}, {"de", 3}, {"le", 4}, {"lac", 1}});
  EXPECT_EQ(marked_sentence(written_as(sentence, "va du lac"), hit_at({2, 3}), 2),
            (Pieces{{"va "}, {"du", true, true}, {" lac"}}));
  EXPECT_EQ(marked_sentence(written_as(sentence, "va du lac"), hit_at({3, 4}), 2),
            (Pieces{{"va "}, {"du", true, false}, {" "}, {"lac", true, true}}));
}

TEST(MarkedSentence, IsTheFormsWhereMembersCannotBeToldInTheText) {
  const Pieces forms = {{"Heavy", true, false}, {" "}, {"rain", true, true}, {" fell ."}};
  EXPECT_EQ(marked_sentence(written_as(heavy_rain(), "fell."), hit_at({1, 2}), 2), forms);
  EXPECT_EQ(marked_sentence(written_as(heavy_rain(), std::string(41, 'x') + " fell."), hit_at({1, 2}), 2), forms);
}

TEST(MarkedSentence, IsCalledByItsIdentifierOrItsPlace) {
  EXPECT_EQ(name_of(written_as(heavy_rain(), "", "w-7")), "w-7");
  EXPECT_EQ(name_of(written_as(heavy_rain(), "", "")), "bank.conllu:4");
  EXPECT_EQ(name_of(heavy_rain()), "words.dat:1");
}

TEST(MarkedSentence, KnowsTheTopWordOfAChain) {
  const auto sentence = sentence_of({{"a", 2}, {"b", 4}, {"c", 2}, {"d", 0}});
  EXPECT_EQ(top_of(sentence, hit_at({1, 2, 3}), 3), 1U);
  EXPECT_EQ(top_of(sentence, hit_at({2, 4}), 2), 1U);
  EXPECT_EQ(top_of(sentence, hit_at({1, 2, 4}), 3), 2U);
}

}  // namespace
}  // namespace colx::examples
